#include "Words.h"

#include <algorithm>
#include <limits>

#include <quire/session/ErrorString.h>

namespace Tool {

namespace {

std::optional<QString> hexDigits(const QString &text)
{
    for (const char *prefix : {"0x", "x"})
        if (text.startsWith(QLatin1String(prefix), Qt::CaseInsensitive))
            return text.mid(int(qstrlen(prefix)));
    return std::nullopt;
}

} // namespace

std::optional<qint32> parseCode(const QString &text)
{
    bool ok = false;
    if (const std::optional<QString> digits = hexDigits(text)) {
        // What the conversion would also take has no place behind the prefix: a sign, blanks, one more prefix.
        const bool bare = std::all_of(digits->begin(), digits->end(),
                                      [](QChar c) { return c.isLetterOrNumber() && c.toLower() != QLatin1Char('x'); });
        const quint32 value = digits->toUInt(&ok, 16);
        return ok && bare ? std::optional<qint32>(static_cast<qint32>(value)) : std::nullopt;
    }
    const qint64 value = text.toLongLong(&ok, 10);
    if (!ok || value < std::numeric_limits<qint32>::min() || value > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<qint32>(value);
}

std::optional<qint32> parseNumber(const QString &text)
{
    bool ok = false;
    const qint32 value = text.toInt(&ok, 10);
    return ok ? std::optional<qint32>(value) : std::nullopt;
}

QString hexCode(qint32 code)
{
    return QStringLiteral("0x%1")
        .arg(static_cast<quint32>(code), 8, 16, QLatin1Char('0'))
        .toUpper()
        .replace(QLatin1Char('X'), QLatin1Char('x'));
}

QString reason(HRESULT code, bool login)
{
    const QString words = Quire::getErrorString(code, login);
    return words.isEmpty() ? QStringLiteral("server error %1").arg(hexCode(code)) : words;
}

QString serverFailure(const _com_error &error)
{
    return QStringLiteral("the server failed: %1").arg(reason(error.Error(), false));
}

QString counted(qint64 number, const QString &one, const QString &many)
{
    return QStringLiteral("%1 %2").arg(QString::number(number), number == 1 ? one : many);
}

} // namespace Tool
