#include <quire/session/ServerTime.h>

#include <QtGlobal>

#include <quire/platform/System.h>

namespace {

/// The run-time's time of local midnight, 1970-01-01; whether daylight saving applied is for the run-time to know.
__int64 localOrigin()
{
    std::tm origin = {};
    origin.tm_mday = 1;
    origin.tm_mon = 0;
    origin.tm_year = 70;
    origin.tm_isdst = -1;
    return Platform::makeTime(origin);
}

} // namespace

long ConvertDate2Orvex(__int64 t)
{
    if (t == 0)
        t = Platform::now() + Platform::timeZoneDifference();
    // Unsigned, because the difference of two 64-bit times may not fit; only its low 32 bits count.
    const quint64 seconds = static_cast<quint64>(t) - static_cast<quint64>(localOrigin());
    return static_cast<qint32>(static_cast<quint32>(seconds));
}

void ConvertOrvex2Date(long value, struct tm *out)
{
    if (!out)
        return;
    std::tm broken = {};
    if (Platform::localTime(static_cast<qint32>(value), broken))
        *out = broken;
}
