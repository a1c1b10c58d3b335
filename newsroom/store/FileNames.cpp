#include <quire/newsroom/store/FileNames.h>

#include <QStringList>

#include "../model/Digits.h"

namespace Newsroom {
namespace FileNames {

namespace {

constexpr QChar escape = QLatin1Char('%');

QString encoded(QChar c)
{
    const bool wide = c.unicode() >= 0x80;
    const QString digits = QString::number(c.unicode(), 16).toUpper().rightJustified(wide ? 4 : 2, QLatin1Char('0'));
    return (wide ? QLatin1String("%u") : QLatin1String("%")) + digits;
}

/// A half of a surrogate pair without its other half: no file name in UTF-8 can hold it.
bool isHalf(const QString &name, int i)
{
    const QChar c = name.at(i);
    if (c.isHighSurrogate())
        return i + 1 >= name.size() || !name.at(i + 1).isLowSurrogate();
    return c.isLowSurrogate() && (i == 0 || !name.at(i - 1).isHighSurrogate());
}

bool isForbiddenAnywhere(const QString &name, int i)
{
    const QChar c = name.at(i);
    return c == escape || c.unicode() < 0x20 || c.unicode() == 0x7F || QStringLiteral("<>:\"/\\|?*").contains(c) ||
           isHalf(name, i);
}

bool isReservedDevice(const QString &name)
{
    static const QStringList devices{QStringLiteral("CON"), QStringLiteral("PRN"),    QStringLiteral("AUX"),
                                     QStringLiteral("NUL"), QStringLiteral("CONIN$"), QStringLiteral("CONOUT$")};
    // A device keeps its name with any suffix, and with blanks behind it.
    const QString stem = name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper();
    if (devices.contains(stem))
        return true;
    const bool numbered = stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT"));
    return numbered && stem.size() == 4 && QStringLiteral("0123456789\u00B9\u00B2\u00B3").contains(stem.at(3));
}

template<typename MustEncode>
QString encode(const QString &name, MustEncode mustEncode)
{
    QString out;
    out.reserve(name.size());
    for (int i = 0; i < name.size(); ++i) {
        if (mustEncode(i))
            out += encoded(name.at(i));
        else
            out += name.at(i);
    }
    return out;
}

} // namespace

QString ofEntry(const QString &name)
{
    const bool reserved = isReservedDevice(name);
    const int last = name.size() - 1;
    return encode(name, [&](int i) {
        const bool atEdge = (i == last && (name.at(i) == QLatin1Char(' ') || name.at(i) == QLatin1Char('.'))) ||
                            (i == 0 && (reserved || name.at(i) == QLatin1Char('.')));
        return atEdge || isForbiddenAnywhere(name, i);
    });
}

QString ofExactName(const QString &name)
{
    const bool reserved = isReservedDevice(name);
    return encode(name, [&](int i) {
        const QChar c = name.at(i);
        // Roman numerals and letters in circles are no letters, and have two cases all the same.
        const bool hasCase = c.isLetter() || c.isSurrogate() || c.isMark() || c.toUpper() != c || c.toLower() != c;
        const bool foreignCase = c.unicode() >= 0x80 && hasCase;
        return (i == 0 && (reserved || c == QLatin1Char('.'))) || c.isUpper() || foreignCase ||
               isForbiddenAnywhere(name, i);
    });
}

bool decode(const QString &fileName, QString *name)
{
    QString out;
    for (int i = 0; i < fileName.size(); ++i) {
        if (fileName.at(i) != escape) {
            out += fileName.at(i);
            continue;
        }
        const bool wide = i + 1 < fileName.size() && fileName.at(i + 1) == QLatin1Char('u');
        const int start = i + (wide ? 2 : 1);
        const int digits = wide ? 4 : 2;
        const QStringRef code = fileName.midRef(start, digits);
        if (code.size() < digits || !areHexDigits(code))
            return false;
        out += QChar(code.toUShort(nullptr, 16));
        i = start + digits - 1;
    }
    *name = out;
    return true;
}

QString component(const QString &fileName, int letters)
{
    const int last = fileName.size() - 1;
    int lettersLeft = letters;
    return encode(fileName, [&](int i) {
        const QChar c = fileName.at(i);
        if (c.isLetter() && lettersLeft > 0) {
            --lettersLeft;
            return true;
        }
        const bool blankAtEdge = (i == 0 || i == last) && c.isSpace();
        return blankAtEdge || c == QLatin1Char('.') || c == escape || c.category() == QChar::Other_Control ||
               isHalf(fileName, i);
    });
}

} // namespace FileNames
} // namespace Newsroom
