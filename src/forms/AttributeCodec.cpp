#include <quire/forms/AttributeCodec.h>

#include <QLatin1String>
#include <QtGlobal>

#include <algorithm>
#include <ctime>
#include <iterator>

#include <quire/platform/System.h>
#include <quire/session/ServerTime.h>

namespace Quire {

namespace {

/// How a field's value is converted.
enum class Coding { None, Date, Duration, ClockTime };

struct CodedField
{
    QLatin1String name;
    Coding coding;
};

const CodedField codedFields[] = {
    {QLatin1String("modify-date"), Coding::Date},      {QLatin1String("create-date"), Coding::Date},
    {QLatin1String("air-date"), Coding::Date},         {QLatin1String("total-time"), Coding::Duration},
    {QLatin1String("audio-time"), Coding::Duration},   {QLatin1String("runs-time"), Coding::Duration},
    {QLatin1String("mos-duration"), Coding::Duration}, {QLatin1String("tape-time"), Coding::Duration},
    {QLatin1String("back-time"), Coding::ClockTime},   {QLatin1String("cume-time"), Coding::ClockTime},
};

const QLatin1String readOnlyFields[] = {
    QLatin1String("create-by"),  QLatin1String("create-date"), QLatin1String("item-channel"),
    QLatin1String("line-count"), QLatin1String("modify-by"),   QLatin1String("modify-date"),
    QLatin1String("modify-dev"), QLatin1String("mos-active"),  QLatin1String("mos-subevent"),
    QLatin1String("mos-title"),  QLatin1String("ready"),       QLatin1String("status"),
    QLatin1String("total-time"),
};

Coding codingOf(const QString &loweredName)
{
    for (const CodedField &field : codedFields) {
        if (loweredName == field.name)
            return field.coding;
    }
    return Coding::None;
}

void decodeDate(QString &value)
{
    bool isNumber = false;
    const int serverTime = value.toInt(&isNumber);
    if (!isNumber)
        return;
    std::tm date = {};
    ConvertOrvex2Date(serverTime, &date);
    if (date.tm_mday == 0)
        return; // no day of any month: the run-time could not convert the time
    char text[32];
    if (std::strftime(text, sizeof text, "%x %H:%M:%S", &date) != 0)
        value = QString::fromLocal8Bit(text);
}

void decodeDuration(QString &value)
{
    bool isNumber = false;
    const int total = value.toInt(&isNumber);
    if (!isNumber)
        return;
    const int minutes = total / 60;
    const int seconds = total - minutes * 60;
    if (minutes < 60) {
        value = QString::asprintf("%d:%02d", minutes, seconds);
        return;
    }
    const int hours = minutes / 60;
    value = QString::asprintf("%d:%02d:%02d", hours, minutes - hours * 60, seconds);
}

void decodeClockTime(QString &value)
{
    if (value.isEmpty())
        return;
    const bool relative = !value.startsWith(QLatin1Char('@'));
    const int total = value.mid(relative ? 0 : 1).toInt();
    const int hours = total / 3600;
    const int minutes = total / 60 - hours * 60;
    value = QString::asprintf("%s%d:%02d:%02d", relative ? "+" : "", hours, minutes, total % 60);
}

/// The seconds of "H:M:S", "M:S" or "S" in decimal. An empty string when \a text begins with no number.
QString totalSeconds(const QString &text)
{
    quint32 total = 0; // wraps around where a signed number must not
    for (int index = 0; index < 3; ++index) {
        bool isNumber = false;
        const int part = text.section(QLatin1Char(':'), index, index).toInt(&isNumber);
        if (!isNumber && index == 0)
            return QStringLiteral("");
        if (!isNumber)
            break;
        total = total * 60 + static_cast<quint32>(part);
    }
    return QString::number(static_cast<qint32>(total));
}

void encodeClockTime(QString &value)
{
    if (value.isEmpty())
        return;
    const bool relative = value.startsWith(QLatin1Char('+'));
    value = totalSeconds(value.mid(relative ? 1 : 0));
    if (!relative && !value.isEmpty())
        value.prepend(QLatin1Char('@'));
}

} // namespace

void DecodeAttribute(const QString &name, QString &value)
{
    switch (codingOf(name.toLower())) {
    case Coding::Date:
        decodeDate(value);
        break;
    case Coding::Duration:
        decodeDuration(value);
        break;
    case Coding::ClockTime:
        decodeClockTime(value);
        break;
    case Coding::None:
        break;
    }
    value = value.trimmed();
}

void EncodeAttribute(const QString &name, QString &value)
{
    const QString lowered = name.toLower();
    if (lowered == QLatin1String("modify-date")) {
        value = QString::number(ConvertDate2Orvex(0));
        return;
    }
    if (lowered == QLatin1String("modify-by")) {
        const QString user = Platform::userName();
        if (!user.isNull())
            value = user;
        return;
    }
    switch (codingOf(lowered)) {
    case Coding::Duration:
        value = totalSeconds(value);
        break;
    case Coding::ClockTime:
        encodeClockTime(value);
        break;
    case Coding::Date: // the server stamps it
    case Coding::None:
        break;
    }
}

bool IsAttributeReadOnly(const QString &name)
{
    const QString lowered = name.toLower();
    return std::any_of(std::begin(readOnlyFields), std::end(readOnlyFields),
                       [&lowered](QLatin1String field) { return lowered == field; });
}

} // namespace Quire
