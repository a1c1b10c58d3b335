#include "MarkupQuirks.h"

#include <algorithm>

#include <QRegularExpression>

namespace MarkupTest {

namespace {

const QRegularExpression &attributePattern()
{
    static const QRegularExpression pattern(QStringLiteral("(\\s+)([^\\s=/>]+)(\\s*=\\s*)(\"[^\"]*\"|'[^']*')"));
    return pattern;
}

/// The quirk in the start tag \a tag, from "<" to ">".
QString quirkOfStartTag(const QString &tag)
{
    static const QRegularExpression name(QStringLiteral("^<([^\\s/>]+)"));
    const QString element = name.match(tag).captured(1);
    if (element == QLatin1String("meta") || element == QLatin1String("zeko:meta"))
        return QStringLiteral("an element called meta");
    const QChar behindName = tag[element.size() + 1];
    if (behindName.isSpace() && behindName != QLatin1Char(' '))
        return QStringLiteral("other white space than a blank behind an element's name");
    auto attributes = attributePattern().globalMatch(tag);
    while (attributes.hasNext()) {
        const QRegularExpressionMatch attribute = attributes.next();
        const QString value = attribute.captured(4);
        if (attribute.captured(3).size() > 1)
            return QStringLiteral("white space around an equals sign");
        if (value.startsWith(QLatin1Char('\'')))
            return QStringLiteral("single quotes");
        if (value.contains(QLatin1Char('>')))
            return QStringLiteral("\">\" in an attribute value");
        if (value.contains(QLatin1Char('&')))
            return QStringLiteral("references in an attribute value");
        if (std::any_of(value.begin(), value.end(), [](QChar c) { return c.unicode() < 0x20; }))
            return QStringLiteral("line breaks or tabs in an attribute value");
    }
    return QString();
}

/// The quirk in the references of \a text.
QString quirkOfText(const QString &text)
{
    static const QRegularExpression reference(QStringLiteral("&([^;]*);"));
    auto references = reference.globalMatch(text);
    while (references.hasNext()) {
        const QString name = references.next().captured(1);
        static const QStringList known = {QStringLiteral("lt"), QStringLiteral("gt"), QStringLiteral("amp"),
                                          QStringLiteral("quot"), QStringLiteral("apos")};
        if (known.contains(name))
            continue;
        if (!name.startsWith(QLatin1Char('#')))
            return QStringLiteral("entities of its own");
        if (name.midRef(1).toUShort() == 0)
            return QStringLiteral("hexadecimal references or such beyond 65535");
        if (name.midRef(1).toUShort() <= 32)
            return QStringLiteral("references to line ends");
    }
    return QString();
}

/// The end of the token of \a document that begins at \a start with "<", and the quirk in it.
int endOfToken(const QString &document, int start, QString *quirk)
{
    const auto behind = [&](const char *close) {
        const int at = document.indexOf(QLatin1String(close), start);
        return at < 0 ? document.size() : at + int(qstrlen(close));
    };
    const QStringRef head = document.midRef(start, 9);
    if (head.startsWith(QLatin1String("<!--")))
        return behind("-->");
    if (head.startsWith(QLatin1String("<![CDATA[")))
        return behind("]]>");
    if (head.startsWith(QLatin1String("<?"))) {
        const bool declaration = head.startsWith(QLatin1String("<?xml"));
        *quirk = declaration ? QString() : QStringLiteral("processing instructions");
        return behind("?>");
    }
    if (head.startsWith(QLatin1String("<!DOCTYPE"))) {
        const int end = behind(">");
        *quirk = document.midRef(start, end - start).contains(QLatin1Char('['))
                     ? QStringLiteral("declarations of its own")
                     : QString();
        return end;
    }
    static const QRegularExpression tag(QStringLiteral("<(?:[^\"'>]|\"[^\"]*\"|'[^']*')*>"));
    const QString found =
        tag.match(document, start, QRegularExpression::NormalMatch, QRegularExpression::AnchoredMatchOption).captured();
    if (!found.startsWith(QLatin1String("</")))
        *quirk = quirkOfStartTag(found);
    else if (std::any_of(found.begin(), found.end(), [](QChar c) { return c.isSpace(); }))
        *quirk = QStringLiteral("white space in an end tag");
    return start + qMax(1, found.size());
}

} // namespace

QString quirkOf(const QString &document)
{
    int pos = 0;
    while (pos < document.size()) {
        int start = document.indexOf(QLatin1Char('<'), pos);
        if (start < 0)
            start = document.size();
        QString quirk = quirkOfText(document.mid(pos, start - pos));
        pos = start < document.size() ? endOfToken(document, start, &quirk) : start;
        if (!quirk.isEmpty())
            return quirk;
    }
    return QString();
}

} // namespace MarkupTest
