#pragma once

#include <QObject>

#include <gtest/gtest.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include <quire/models/ServerModel.h>

/// Something that a slot does to a model, once: the first time that the model emits a signal.
class Interruption : public QObject
{
public:
    /// Connects \a action to the signal of that name, which ServerModel has.
    Interruption(Quire::ServerModel &model, const std::string &signal, std::function<void()> action);

    /// Whether the signal has come.
    bool happened() const { return m_happened; }

private:
    template<typename Signal>
    void connectTo(Quire::ServerModel &model, Signal signal);
    void act();

    std::function<void()> m_action;
    bool m_happened = false;
};

/// What a slot does when a signal comes; "Destroy" ends the model.
struct Moment
{
    std::string signal;
    std::string action;
    bool waits; ///< The slot then runs the event loop for a while, as a message box does.

    bool does(const char *what) const { return action == what; }
    /// Calls \a act, and waits.
    void act(const std::function<void()> &act) const;
};

/// Each action at each signal, and each but "Destroy" also with waiting. Qt takes no end of a model that is about to
/// change.
std::vector<Moment> moments(const std::vector<std::string> &signalNames, const std::vector<std::string> &actions);
/// For INSTANTIATE_TEST_SUITE_P.
std::string momentName(const ::testing::TestParamInfo<Moment> &test);
std::ostream &operator<<(std::ostream &stream, const Moment &moment);

/// Whether what a SignalLog has taken tells of loads one after the other: each begins and then finishes or fails once,
/// unless a reset comes between.
::testing::AssertionResult isOrderly(const QStringList &signalLines);
