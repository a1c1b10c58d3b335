#include "BodyText.h"

#include <memory>

#include <QRegularExpression>

#include <quire/XML.h>

#include "MarkupWalk.h"

namespace Tool {

namespace {

const QLatin1String emptyBody("<body></body>");

QString localName(const XML::NamedTag &element)
{
    const QLatin1String prefix("zeko:");
    return element.m_Name.startsWith(prefix) ? element.m_Name.mid(prefix.size()) : element.m_Name;
}

/// Gathers text into paragraphs.
class Paragraphs
{
public:
    void add(const QString &text)
    {
        // Between paragraphs white space only lays out the markup.
        if (!m_open && text.trimmed().isEmpty())
            return;
        if (!m_open)
            begin();
        m_lines.last() += text;
    }
    void begin()
    {
        m_lines += QString();
        m_open = true;
    }
    void end() { m_open = false; }
    QString text() const { return m_lines.join(QLatin1Char('\n')); }

private:
    QStringList m_lines;
    bool m_open = false;
};

/// The markup without the white space that stands only between paragraphs, and without prefix.
QString withoutLayout(QString markup)
{
    static const QRegularExpression layout(QStringLiteral("(<body>|</p>)\\s+(?=<)"));
    markup = markup.trimmed();
    markup.replace(QLatin1String("<zeko:body>"), QLatin1String("<body>"));
    markup.replace(QLatin1String("</zeko:body>"), QLatin1String("</body>"));
    return markup.replace(layout, QStringLiteral("\\1"));
}

} // namespace

QString bodyToText(const QString &markup)
{
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(markup));
    Paragraphs paragraphs;
    int depthOfParagraph = 0; // 0 outside of all
    MarkupWalk walk(*root);
    while (walk.next()) {
        if (walk.depth() <= depthOfParagraph) {
            depthOfParagraph = 0;
            paragraphs.end();
        }
        if (const auto *text = dynamic_cast<XML::TextTag *>(&walk.node()))
            paragraphs.add(text->m_Text);
        const auto *element = dynamic_cast<XML::NamedTag *>(&walk.node());
        const QString name = element ? localName(*element) : QString();
        if (name == QLatin1String("p"))
            depthOfParagraph = walk.depth();
        if (name == QLatin1String("p") || name == QLatin1String("br"))
            paragraphs.begin();
    }
    return paragraphs.text();
}

QString textToBody(const QString &text)
{
    if (text.isEmpty())
        return emptyBody;
    QString body;
    for (const QString &line : text.split(QLatin1Char('\n')))
        body += QLatin1String("<p>") + escapeMarkup(line) + QLatin1String("</p>");
    return QLatin1String("<body>") + body + QLatin1String("</body>");
}

bool isPlainBody(const QString &markup)
{
    return textToBody(bodyToText(markup)) == withoutLayout(markup);
}

QString escapeMarkup(const QString &text)
{
    // Not the toolkit's encoder: that one also replaces what is not printable, by numbers that cannot be read back.
    QString escaped = text;
    escaped.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    escaped.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    escaped.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    return escaped;
}

QString unescapeMarkup(const QString &markup)
{
    QString text = markup;
    XML::DecodeString(text);
    return text;
}

} // namespace Tool
