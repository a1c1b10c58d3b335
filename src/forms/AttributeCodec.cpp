#include <quire/forms/AttributeCodec.h>

#include <QLatin1String>
#include <QtGlobal>

#include <algorithm>
#include <charconv>
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
    Coding coding = Coding::None;
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

/// Whether \a name in small letters is \a lowered. Most names are told apart by length and first letter; what becomes
/// plain letters keeps its length.
bool isCalled(const QString &name, QLatin1String lowered)
{
    return name.length() == lowered.size() && name.at(0).toLower() == lowered.at(0) && name.toLower() == lowered;
}

Coding codingOf(const QString &name)
{
    for (const CodedField &field : codedFields) {
        if (isCalled(name, field.name))
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

/// Puts a time of day or a duration together, several times as fast as printf: lists show many of them.
class ClockText
{
public:
    ClockText &plus()
    {
        *m_end++ = '+';
        return *this;
    }
    ClockText &number(int number)
    {
        m_end = std::to_chars(m_end, std::end(m_text), number).ptr;
        return *this;
    }
    /// A colon and the number as "%02d" prints it.
    ClockText &part(int number)
    {
        *m_end++ = ':';
        if (number >= 0 && number < 10)
            *m_end++ = '0';
        return this->number(number);
    }
    QString toString() const { return QLatin1String(m_text, static_cast<int>(m_end - m_text)); }

private:
    char m_text[48] = {}; // three 32-bit numbers and what stands between
    char *m_end = m_text;
};

void decodeDuration(QString &value)
{
    bool isNumber = false;
    const int total = value.toInt(&isNumber);
    if (!isNumber)
        return;
    const int minutes = total / 60;
    const int seconds = total - minutes * 60;
    const int hours = minutes / 60;
    ClockText text;
    if (minutes < 60)
        text.number(minutes).part(seconds);
    else
        text.number(hours).part(minutes - hours * 60).part(seconds);
    value = text.toString();
}

void decodeClockTime(QString &value)
{
    if (value.isEmpty())
        return;
    const bool relative = !value.startsWith(QLatin1Char('@'));
    const int total = value.midRef(relative ? 0 : 1).toInt();
    const int hours = total / 3600;
    const int minutes = total / 60 - hours * 60;
    ClockText text;
    if (relative)
        text.plus();
    value = text.number(hours).part(minutes).part(total % 60).toString();
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
    switch (codingOf(name)) {
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
