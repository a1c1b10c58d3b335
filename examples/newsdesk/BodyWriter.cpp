#include "BodyWriter.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>

#include "BodyDocument.h"

namespace Desk {

namespace {

QString escaped(QString text)
{
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    text.replace(QChar::LineSeparator, QLatin1String("<br/>"));
    return text;
}

/// Whether text of this format looks as that element has it.
bool isStyled(const QTextCharFormat &format, const QString &element)
{
    if (element == QLatin1String("b"))
        return format.fontWeight() >= QFont::DemiBold;
    return element == QLatin1String("u") ? format.fontUnderline() : format.fontItalic();
}

/// The styles of a piece of text, the outermost first.
QStringList stylesOf(const QTextCharFormat &format)
{
    QStringList styles;
    for (const QString &element : format.property(StylesProperty).toStringList()) {
        if (isStyled(format, element))
            styles += element;
    }
    for (const char *name : {"b", "i", "u"}) {
        const QString element = QLatin1String(name);
        const bool isEmphasis = element == QLatin1String("i") && styles.contains(QLatin1String("em"));
        if (isStyled(format, element) && !styles.contains(element) && !isEmphasis)
            styles += element;
    }
    return styles;
}

/// A chip is one character: what was typed behind it may have its format, but is text.
QString piece(const QTextFragment &fragment)
{
    const QString raw = fragment.charFormat().stringProperty(RawProperty);
    const QString text = fragment.text();
    QString all;
    for (const QChar character : text)
        all += character == QChar::ObjectReplacementCharacter ? raw : escaped(character);
    return all;
}

QString paragraph(const QTextBlock &block)
{
    QString text;
    QStringList open;
    for (auto each = block.begin(); !each.atEnd(); ++each) {
        const QStringList styles = stylesOf(each.fragment().charFormat());
        int same = 0;
        while (same < open.size() && same < styles.size() && open.at(same) == styles.at(same))
            ++same;
        while (open.size() > same)
            text += QStringLiteral("</%1>").arg(open.takeLast());
        for (; same < styles.size(); ++same) {
            text += QStringLiteral("<%1>").arg(styles.at(same));
            open.append(styles.at(same));
        }
        text += piece(each.fragment());
    }
    while (!open.isEmpty())
        text += QStringLiteral("</%1>").arg(open.takeLast());
    return text;
}

} // namespace

QString bodyContent(const QTextDocument &document)
{
    const QTextBlock first = document.begin();
    if (document.isEmpty() && !first.blockFormat().hasProperty(ParagraphProperty))
        return QString();
    QString content;
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        if (format.boolProperty(LooseProperty))
            content += paragraph(block);
        else
            content += QStringLiteral("<p%1>%2</p>").arg(format.stringProperty(ParagraphProperty), paragraph(block));
    }
    return content;
}

} // namespace Desk
