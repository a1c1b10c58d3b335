#include "FormChecks.h"

#include <array>
#include <cstdio>
#include <ctime>

#include <QLatin1String>

#include <quire/forms/AttributeCodec.h>
#include <quire/session/ServerTime.h>

namespace FormFuzz {

namespace {

enum class Kind { Date, Duration, ClockTime, Stamp, Other };

Kind kindOf(const QString &name)
{
    const QString lowered = name.toLower();
    for (const char *date : {"modify-date", "create-date", "air-date"}) {
        if (lowered == QLatin1String(date))
            return Kind::Date;
    }
    for (const char *duration : {"total-time", "audio-time", "runs-time", "mos-duration", "tape-time"}) {
        if (lowered == QLatin1String(duration))
            return Kind::Duration;
    }
    if (lowered == QLatin1String("back-time") || lowered == QLatin1String("cume-time"))
        return Kind::ClockTime;
    return lowered == QLatin1String("modify-by") ? Kind::Stamp : Kind::Other;
}

QString decoded(const QString &name, QString value)
{
    Quire::DecodeAttribute(name, value);
    return value;
}

QString encoded(const QString &name, QString value)
{
    Quire::EncodeAttribute(name, value);
    return value;
}

QString shownDate(long serverTime, const QString &otherwise)
{
    std::tm date = {};
    date.tm_year = -1;
    ConvertOrvex2Date(serverTime, &date);
    std::array<char, 256> text{};
    if (date.tm_year == -1 || std::strftime(text.data(), text.size(), "%x %H:%M:%S", &date) > 31)
        return otherwise;
    return QString::fromLocal8Bit(text.data());
}

QString shownDuration(long seconds)
{
    std::array<char, 64> text{};
    const long minutes = seconds / 60;
    if (minutes < 60)
        std::snprintf(text.data(), text.size(), "%ld:%02ld", minutes, seconds % 60);
    else
        std::snprintf(text.data(), text.size(), "%ld:%02ld:%02ld", seconds / 3600, minutes % 60, seconds % 60);
    return QString::fromLatin1(text.data());
}

QString shownClockTime(QString value)
{
    if (value.isEmpty())
        return value;
    const bool relative = value.at(0) != QLatin1Char('@');
    if (!relative)
        value.remove(0, 1);
    const long seconds = value.toInt();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60, seconds % 60);
    return QLatin1String(relative ? "+" : "") + QString::fromLatin1(text.data());
}

QString shown(Kind kind, const QString &value)
{
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (kind == Kind::ClockTime)
        return shownClockTime(value);
    if (kind == Kind::Date && isNumber)
        return shownDate(number, value);
    if (kind == Kind::Duration && isNumber)
        return shownDuration(number);
    return value;
}

bool isNumber(const QString &text)
{
    bool ok = false;
    return QString::number(text.toInt(&ok)) == text && ok;
}

/// Whether the codec may have made \a value out of \a from.
bool isStored(Kind kind, const QString &value, const QString &from)
{
    if (kind == Kind::Duration)
        return value.isEmpty() ? !value.isNull() : isNumber(value);
    if (kind != Kind::ClockTime)
        return value == from;
    if (from.isEmpty() || value.isEmpty())
        return value.isEmpty();
    const bool relative = from.at(0) == QLatin1Char('+');
    return relative ? isNumber(value) : value.at(0) == QLatin1Char('@') && isNumber(value.mid(1));
}

} // namespace

QString checkCodec(const QString &text)
{
    const QString name = text.section(QLatin1Char('\n'), 0, 0);
    const QString value = text.section(QLatin1Char('\n'), 1);
    const Kind kind = kindOf(name);
    const QString read = decoded(name, value);
    if (read != shown(kind, value).trimmed())
        return QStringLiteral("shown as \"%1\"").arg(read);
    if (kind != Kind::Other && read != decoded(name.toUpper(), value))
        return QStringLiteral("shown otherwise for a name in capitals");
    if (kind == Kind::Stamp || name.toLower() == QLatin1String("modify-date"))
        return QString();
    const QString stored = encoded(name, value);
    if (!isStored(kind, stored, value))
        return QStringLiteral("stored as \"%1\"").arg(stored);
    const bool comesBack = kind == Kind::Duration || kind == Kind::ClockTime;
    if (comesBack && encoded(name, decoded(name, stored)) != stored)
        return QStringLiteral("stored \"%1\" does not come back").arg(stored);
    if (comesBack && encoded(name.toUpper(), value) != stored)
        return QStringLiteral("stored otherwise for a name in capitals");
    return QString();
}

} // namespace FormFuzz
