#pragma once

#include <QtGlobal>

#include <chrono>

// Tests that wear the library down. Those of a suite that is named ...Stress work for some time with many threads,
// those of a suite ...Soak repeat themselves: both briefly in the ordinary suite and at full length under `./dev soak`,
// which finds them by these names and shows the properties that they record.

/// For how long each test of a suite ...Stress works: 5 s, or as many seconds as QUIRE_STRESS_SECONDS says.
inline std::chrono::milliseconds stressTime()
{
    bool given = false;
    const int seconds = qEnvironmentVariableIntValue("QUIRE_STRESS_SECONDS", &given);
    return std::chrono::seconds(given ? seconds : 5);
}

/// How often a test of a suite ...Soak repeats itself: \a brief times, \a full times when QUIRE_SOAK is set.
inline int soakRounds(int brief, int full = 10000)
{
    return qEnvironmentVariableIsSet("QUIRE_SOAK") ? full : brief;
}
