#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <ctime>

#ifndef Q_OS_WIN

/// Another local time zone for one scope. Natively only: there a test can choose any.
class Zone
{
public:
    explicit Zone(const char *rule)
        : m_wasSet(qEnvironmentVariableIsSet("TZ"))
        , m_before(qgetenv("TZ"))
    {
        qputenv("TZ", rule);
        tzset();
    }
    ~Zone()
    {
        if (m_wasSet)
            qputenv("TZ", m_before);
        else
            qunsetenv("TZ");
        tzset();
    }

private:
    Q_DISABLE_COPY(Zone)
    bool m_wasSet;
    QByteArray m_before;
};

/// Zones that need no installed list of zones.
namespace Zones {

constexpr const char *berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char *newYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char *kolkata = "IST-5:30";
constexpr const char *tokyo = "JST-9";
constexpr const char *auckland = "NZST-12NZDT,M9.5.0,M4.1.0/3"; // daylight saving in January

} // namespace Zones

#endif
