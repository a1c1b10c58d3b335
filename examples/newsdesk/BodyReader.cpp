#include "BodyReader.h"

#include <QTextBlockFormat>
#include <QTextDocument>

#include "BodyDocument.h"

namespace Desk {

namespace {

/// Whether the element is a style of text, which \a format then gets.
bool addStyle(const QString &name, QTextCharFormat *format)
{
    if (name == QLatin1String("b"))
        format->setFontWeight(QFont::Bold);
    else if (name == QLatin1String("i") || name == QLatin1String("em"))
        format->setFontItalic(true);
    else if (name == QLatin1String("u"))
        format->setFontUnderline(true);
    else
        return false;
    QStringList styles = format->property(StylesProperty).toStringList();
    if (!styles.contains(name))
        styles += name;
    format->setProperty(StylesProperty, styles);
    return true;
}

} // namespace

QString localName(const QString &name)
{
    const QLatin1String prefix("zeko:");
    return name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

QString attributesOf(const XML::NamedTag &element)
{
    QString text;
    for (auto each = element.m_Attributes.constBegin(); each != element.m_Attributes.constEnd(); ++each)
        text += QStringLiteral(" %1=\"%2\"").arg(each.key(), each.value());
    return text;
}

BodyReader::BodyReader(QTextDocument &document)
    : m_cursor(&document)
{}

void BodyReader::read(XML::Tag &root)
{
    XML::Tag *node = &root;
    int depth = 0;
    bool descend = true;
    for (;;) {
        if (descend && node->m_Child) {
            node = node->m_Child;
            ++depth;
        } else {
            while (node != &root && !node->m_Next) {
                node = node->m_Parent;
                --depth;
            }
            if (node == &root)
                break;
            node = node->m_Next;
        }
        leave(depth);
        descend = enter(*node, depth);
    }
    leave(0);
}

bool BodyReader::enter(XML::Tag &node, int depth)
{
    if (const auto *text = dynamic_cast<XML::TextTag *>(&node)) {
        addText(text->m_Text);
        return true;
    }
    const auto *const element = dynamic_cast<XML::NamedTag *>(&node);
    const QString name = element ? localName(element->m_Name) : QString();
    QTextCharFormat format = m_format;
    if (name == QLatin1String("p") && m_place != Paragraph) {
        beginParagraph(element);
        m_open.push_back({depth, m_format, true});
    } else if (name == QLatin1String("br") && !node.m_Child) {
        addText(QString(QChar::LineSeparator));
    } else if (element && element->m_Attributes.isEmpty() && addStyle(name, &format)) {
        m_open.push_back({depth, m_format, false});
        m_format = format;
    } else {
        addChip(node);
        return false;
    }
    return true;
}

void BodyReader::leave(int depth)
{
    while (!m_open.empty() && m_open.back().depth >= depth) {
        m_format = m_open.back().format;
        if (m_open.back().isParagraph)
            m_place = Nowhere;
        m_open.pop_back();
    }
}

/// Without an element for what stands in none.
void BodyReader::beginParagraph(const XML::NamedTag *element)
{
    QTextBlockFormat format;
    if (element)
        format.setProperty(ParagraphProperty, attributesOf(*element));
    else
        format.setProperty(LooseProperty, true);
    if (m_first)
        m_cursor.setBlockFormat(format);
    else
        m_cursor.insertBlock(format, QTextCharFormat());
    m_first = false;
    m_place = element ? Paragraph : Loose;
}

void BodyReader::addText(const QString &text)
{
    if (m_place == Nowhere && text.trimmed().isEmpty())
        return; // between paragraphs white space only lays out the markup
    if (m_place == Nowhere)
        beginParagraph(nullptr);
    QString line = text;
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    m_cursor.insertText(line, m_format);
}

void BodyReader::addChip(XML::Tag &node)
{
    QString raw;
    node.TagToText(raw, QChar(), false, false);
    if (m_place == Nowhere)
        beginParagraph(nullptr);
    QTextCharFormat format = m_format;
    format.setObjectType(chipObject);
    format.setProperty(RawProperty, raw);
    m_cursor.insertText(QString(QChar::ObjectReplacementCharacter), format);
}

} // namespace Desk
