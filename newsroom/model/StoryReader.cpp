#include "StoryReader.h"

#include "UniqueFields.h"

namespace Newsroom {

using Zeko::Scanner;
using Zeko::Token;

namespace {

/// What a story file in UTF-8 could not hold is written as a reference.
QString storable(const QString &text)
{
    const bool fine = !text.contains(QChar(0)) && text.isValidUtf16();
    if (fine)
        return text;
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            out.append(c).append(text.at(++i));
        else if (c.isSurrogate() || c.isNull())
            out.append(Zeko::escapeText(QString(c)));
        else
            out.append(c);
    }
    return out;
}

/// The characters within one element that was just opened, tags left out; the element's end tag is consumed.
bool elementText(Scanner *scanner, const Token &open, QString *text)
{
    text->clear();
    if (open.kind == Token::Empty)
        return true;
    Zeko::Balance balance;
    balance.follow(open, scanner->name(open));
    while (balance.depth() > 0) {
        const Token token = scanner->next();
        if (token.kind == Token::End || token.kind == Token::Error)
            return false;
        text->append(scanner->text(token));
        if ((token.kind == Token::Open || token.kind == Token::Close) && !balance.follow(token, scanner->name(token)))
            return false;
    }
    return true;
}

/// The attributes of an "f" element, its identifier taken out.
bool fieldIdentity(const Scanner &scanner, const Token &token, StoryField *field)
{
    if (Zeko::localName(scanner.name(token)) != QLatin1String("f") || !scanner.attributes(token, &field->attributes))
        return false;
    for (int i = 0; i < field->attributes.size(); ++i) {
        if (field->attributes.at(i).name == QLatin1String("id")) {
            field->id = field->attributes.takeAt(i).value;
            break;
        }
    }
    return !field->id.isEmpty();
}

bool readFields(const QString &inner, StoryText *story)
{
    Scanner scanner(inner);
    UniqueFields unique;
    for (;;) {
        const Token token = scanner.next();
        if (token.kind == Token::End) {
            story->fields = unique.fields();
            return true;
        }
        if (token.kind == Token::Other || (token.kind == Token::Text && isBlank(scanner.text(token))))
            continue;
        if (token.kind != Token::Open && token.kind != Token::Empty)
            return false;
        StoryField field;
        if (!fieldIdentity(scanner, token, &field) || !elementText(&scanner, token, &field.value))
            return false;
        unique.add(field);
    }
}

/// Each name once, with its last value; what is empty is not there.
QVector<NameValue> uniqueAttributes(const QVector<NameValue> &attributes)
{
    QHash<QString, QString> last;
    for (const NameValue &attribute : attributes)
        last.insert(attribute.name, attribute.value);
    QVector<NameValue> unique;
    for (const NameValue &attribute : attributes) {
        const QString value = last.take(attribute.name);
        if (!value.isEmpty())
            unique.append({attribute.name, value});
    }
    return unique;
}

bool readHead(const QString &inner, StoryText *story, StoryHeader *header)
{
    Scanner scanner(inner);
    QVector<NameValue> meta;
    for (;;) {
        const Token token = scanner.next();
        if (token.kind == Token::End) {
            story->meta = uniqueAttributes(meta);
            return true;
        }
        if (token.kind != Token::Open && token.kind != Token::Empty)
            continue;
        const QString name = Zeko::localName(scanner.name(token));
        if (name == QLatin1String("meta")) {
            QVector<NameValue> attributes;
            if (!scanner.attributes(token, &attributes))
                return false;
            meta += attributes;
            continue;
        }
        QString *const text = name == QLatin1String("storyid")    ? &header->storyId
                              : name == QLatin1String("formname") ? &header->formName
                                                                  : nullptr;
        if (text != nullptr && !elementText(&scanner, token, text))
            return false;
    }
}

/// Gathers the paragraphs of a body.
class Paragraphs
{
public:
    void open()
    {
        flush();
        m_inside = true;
    }

    void close()
    {
        if (m_inside)
            m_list.append(m_current);
        else
            flush();
        m_current.clear();
        m_inside = false;
    }

    void add(const QString &text)
    {
        QString line = text;
        if (m_inside)
            line.replace(QLatin1String("\r\n"), QLatin1String(" "))
                .replace(QLatin1Char('\n'), QLatin1Char(' '))
                .replace(QLatin1Char('\r'), QLatin1Char(' '));
        m_current.append(line);
    }

    void breakLine() { m_current.append(QLatin1Char('\n')); }

    QString text()
    {
        flush();
        return m_list.join(QLatin1Char('\n'));
    }

private:
    QStringList m_list;
    QString m_current;
    bool m_inside = false;

    /// Text outside of paragraph elements makes a paragraph of each line that is not blank.
    void flush()
    {
        if (m_inside) {
            m_list.append(m_current);
        } else {
            const QStringList lines = StoryReader::lines(m_current);
            for (const QString &line : lines) {
                if (!isBlank(line))
                    m_list.append(line.trimmed());
            }
        }
        m_current.clear();
        m_inside = false;
    }
};

} // namespace

StoryReader::StoryReader(const QString &text)
    : m_text(storable(text))
    , m_scanner(m_text)
{}

bool StoryReader::read(StoryText *text, StoryHeader *header, qint32 *found)
{
    m_story = text;
    m_header = header;
    for (;;) {
        const Token token = m_scanner.next();
        bool fine = true;
        switch (token.kind) {
        case Token::End:
            *found = m_found;
            return !m_inStory;
        case Token::Error:
            return false;
        case Token::Text:
        case Token::CData:
            fine = isBlank(m_scanner.text(token));
            break;
        case Token::Other:
            break;
        case Token::Open:
        case Token::Empty:
            fine = openTopLevel(token);
            break;
        case Token::Close:
            fine = closeStory(token);
            break;
        }
        if (!fine)
            return false;
    }
}

bool StoryReader::openTopLevel(const Token &token)
{
    if (m_afterStory)
        return false;
    QVector<NameValue> ignored;
    const QString name = m_scanner.name(token);
    if (!m_scanner.attributes(token, &ignored))
        return false;
    if (Zeko::localName(name) == QLatin1String("story") && !m_inStory && m_found == 0) {
        m_inStory = token.kind == Token::Open;
        m_afterStory = !m_inStory;
        return m_balance.follow(token, name);
    }
    const qint32 section = sectionByName(name);
    if (section == 0 || (m_found & section) != 0)
        return false;
    m_found |= section;
    return readSection(token, section);
}

bool StoryReader::closeStory(const Token &token)
{
    if (!m_inStory || !m_balance.follow(token, m_scanner.name(token)))
        return false;
    m_inStory = false;
    m_afterStory = true;
    return true;
}

bool StoryReader::readSection(const Token &open, qint32 section)
{
    if (open.kind == Token::Empty)
        return takeSection(section, QString());
    const int outside = m_balance.depth();
    m_balance.follow(open, m_scanner.name(open));
    QVector<NameValue> ignored;
    for (;;) {
        const Token token = m_scanner.next();
        if (token.kind == Token::End || token.kind == Token::Error)
            return false;
        const bool opens = token.kind == Token::Open || token.kind == Token::Empty;
        if (opens && !m_scanner.attributes(token, &ignored))
            return false;
        if (!opens && token.kind != Token::Close)
            continue;
        if (!m_balance.follow(token, m_scanner.name(token)) || m_balance.depth() < outside)
            return false;
        if (m_balance.depth() == outside)
            return takeSection(section, m_text.mid(open.end, token.start - open.end));
    }
}

bool StoryReader::takeSection(qint32 section, const QString &inner)
{
    switch (section) {
    case Section::Head:
        return readHead(inner, m_story, m_header);
    case Section::Look:
        m_story->look = inner;
        return true;
    case Section::Fields:
        return readFields(inner, m_story);
    case Section::Body:
        m_story->body = inner;
        return true;
    case Section::Aeset:
        m_story->aeset = inner;
        return true;
    case Section::FieldAtts:
        m_story->fieldAtts = inner;
        return true;
    default:
        m_story->aesetAtts = inner;
        return true;
    }
}

QString StoryReader::plainBody(const QString &body)
{
    Scanner scanner(body);
    Paragraphs paragraphs;
    for (;;) {
        const Token token = scanner.next();
        if (token.kind == Token::End || token.kind == Token::Error)
            return paragraphs.text();
        if (token.kind == Token::Text || token.kind == Token::CData) {
            paragraphs.add(scanner.text(token));
            continue;
        }
        if (token.kind == Token::Other)
            continue;
        const QString name = Zeko::localName(scanner.name(token));
        if (name == QLatin1String("br") && token.kind != Token::Close)
            paragraphs.breakLine();
        if (name != QLatin1String("p"))
            continue;
        if (token.kind != Token::Close)
            paragraphs.open();
        if (token.kind != Token::Open)
            paragraphs.close();
    }
}

QStringList StoryReader::lines(const QString &text)
{
    QString unified = text;
    unified.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return unified.split(QLatin1Char('\n'));
}

} // namespace Newsroom
