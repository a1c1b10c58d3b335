#include <quire/newsroom/model/Zeko.h>

#include "Digits.h"

namespace Newsroom {
namespace Zeko {

namespace {

const QLatin1String prefix("zeko:");

bool isHalfSurrogate(const QString &text, int i)
{
    const QChar c = text.at(i);
    if (c.isHighSurrogate())
        return i + 1 >= text.size() || !text.at(i + 1).isLowSurrogate();
    return c.isLowSurrogate() && (i == 0 || !text.at(i - 1).isHighSurrogate());
}

bool needsEscape(const QString &text, int i)
{
    switch (text.at(i).unicode()) {
    case 0:
    case '&':
    case '<':
    case '>':
        return true;
    default:
        return isHalfSurrogate(text, i);
    }
}

QString escaped(QChar c)
{
    switch (c.unicode()) {
    case '&':
        return QStringLiteral("&amp;");
    case '<':
        return QStringLiteral("&lt;");
    case '>':
        return QStringLiteral("&gt;");
    case 0: // A reference to 0 vanishes when it is read: so does the NUL that no text file should hold.
        return QStringLiteral("&#0;");
    default:
        return QStringLiteral("&#%1;").arg(c.unicode());
    }
}

/// Appends the character that the reference between "&" and ";" names; false when it names none.
bool appendReference(const QStringRef &name, QString *out)
{
    static const struct
    {
        QLatin1String name;
        char character = 0;
    } entities[] = {{QLatin1String("amp"), '&'},
                    {QLatin1String("lt"), '<'},
                    {QLatin1String("gt"), '>'},
                    {QLatin1String("quot"), '"'},
                    {QLatin1String("apos"), '\''}};
    for (const auto &entity : entities) {
        if (name.compare(entity.name, Qt::CaseInsensitive) == 0) {
            out->append(QLatin1Char(entity.character));
            return true;
        }
    }
    if (!name.startsWith(QLatin1Char('#')))
        return false;
    const bool hexadecimal = name.mid(1).startsWith(QLatin1Char('x'), Qt::CaseInsensitive);
    const QStringRef digits = name.mid(hexadecimal ? 2 : 1);
    bool ok = false;
    const uint value = digits.toUInt(&ok, hexadecimal ? 16 : 10);
    if (!ok || value > 0x10FFFF || !areHexDigits(digits))
        return false;
    if (value > 0xFFFF) {
        out->append(QChar(QChar::highSurrogate(value)));
        out->append(QChar(QChar::lowSurrogate(value)));
    } else if (value != 0) {
        out->append(QChar(static_cast<ushort>(value)));
    }
    return true;
}

/// No reference is longer than this, so that a "&" with its ";" far away costs nothing.
constexpr int longestReference = 12;

} // namespace

QString escapeText(const QString &text)
{
    int i = 0;
    while (i < text.size() && !needsEscape(text, i))
        ++i;
    if (i == text.size())
        return text;
    QString out;
    out.reserve(text.size() + text.size() / 8 + 16);
    out.append(text.leftRef(i));
    for (; i < text.size(); ++i) {
        if (needsEscape(text, i))
            out.append(escaped(text.at(i)));
        else
            out.append(text.at(i));
    }
    return out;
}

QString unescapeText(const QString &text)
{
    int amp = text.indexOf(QLatin1Char('&'));
    if (amp < 0)
        return text;
    QString out;
    out.reserve(text.size());
    int done = 0;
    while (amp >= 0) {
        out.append(text.midRef(done, amp - done));
        const QStringRef near = text.midRef(amp + 1, longestReference);
        const int length = near.indexOf(QLatin1Char(';'));
        if (length > 0 && appendReference(near.left(length), &out)) {
            done = amp + 1 + length + 1;
        } else {
            out.append(QLatin1Char('&'));
            done = amp + 1;
        }
        amp = text.indexOf(QLatin1Char('&'), done);
    }
    out.append(text.midRef(done));
    return out;
}

QString attributeText(const QString &name, const QString &value)
{
    QString escapedValue = escapeText(value);
    bool bare = !value.isEmpty() && !value.endsWith(QLatin1Char('/'));
    for (int i = 0; bare && i < value.size(); ++i)
        bare = !value.at(i).isSpace() && value.at(i) != QLatin1Char('"');
    QString out;
    out.reserve(name.size() + escapedValue.size() + 4);
    out.append(QLatin1Char(' ')).append(name).append(QLatin1Char('='));
    if (bare)
        return out.append(escapedValue);
    escapedValue.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    return out.append(QLatin1Char('"')).append(escapedValue).append(QLatin1Char('"'));
}

bool isName(const QString &name)
{
    if (name.isEmpty())
        return false;
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        if (c.isSpace() || c.category() == QChar::Other_Control || isHalfSurrogate(name, i) ||
            QStringLiteral("<>\"'/=&?!").contains(c))
            return false;
    }
    return true;
}

QString localName(const QString &name)
{
    return name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

Scanner::Scanner(const QString &text, int from)
    : m_text(text)
    , m_pos(from)
{}

Token Scanner::next()
{
    if (m_failed)
        return error(m_pos);
    Token token;
    token.start = token.end = token.contentStart = token.contentEnd = m_pos;
    if (m_pos >= m_text.size())
        return token;
    if (m_text.at(m_pos) == QLatin1Char('<')) {
        token = tagAt(m_pos);
    } else {
        const int tag = m_text.indexOf(QLatin1Char('<'), m_pos);
        token.kind = Token::Text;
        token.end = token.contentEnd = tag < 0 ? m_text.size() : tag;
    }
    if (token.kind == Token::Error)
        return error(token.start);
    m_pos = token.end;
    return token;
}

Token Scanner::error(int start)
{
    m_failed = true;
    m_pos = start;
    Token token;
    token.kind = Token::Error;
    token.start = token.contentStart = token.contentEnd = start;
    token.end = start;
    return token;
}

Token Scanner::special(int start, Token::Kind kind, int width, const QString &terminator)
{
    const int found = m_text.indexOf(terminator, start + width);
    if (found < 0)
        return error(start);
    Token token;
    token.kind = kind;
    token.start = start;
    token.contentStart = start + width;
    token.contentEnd = found;
    token.end = found + terminator.size();
    return token;
}

Token Scanner::declaration(int start)
{
    constexpr int width = 9; // <!DOCTYPE
    const int close = m_text.indexOf(QLatin1Char('>'), start);
    const int subset = m_text.midRef(start, close < 0 ? -1 : close - start).indexOf(QLatin1Char('['));
    return special(start, Token::Other, width, subset < 0 ? QStringLiteral(">") : QStringLiteral("]>"));
}

Token Scanner::tagAt(int start)
{
    const QStringRef head = m_text.midRef(start, 9);
    if (head.startsWith(QLatin1String("<!--")))
        return special(start, Token::Other, 4, QStringLiteral("-->"));
    if (head.startsWith(QLatin1String("<?xml")))
        return special(start, Token::Other, 5, QStringLiteral("?>"));
    if (head.startsWith(QLatin1String("<![CDATA[")))
        return special(start, Token::CData, 9, QStringLiteral("]]>"));
    if (head.startsWith(QLatin1String("<!DOCTYPE")))
        return declaration(start);
    const bool close = head.startsWith(QLatin1String("</"));
    Token token = special(start, close ? Token::Close : Token::Open, close ? 2 : 1, QStringLiteral(">"));
    if (token.kind == Token::Error)
        return token;
    if (!close && token.contentEnd > token.contentStart && m_text.at(token.contentEnd - 1) == QLatin1Char('/')) {
        token.kind = Token::Empty;
        --token.contentEnd;
    }
    // A "<" inside of a tag means that an earlier "<" never ended.
    if (m_text.midRef(token.contentStart, token.contentEnd - token.contentStart).contains(QLatin1Char('<')))
        return error(start);
    if (!isName(name(token)))
        return error(start);
    return token;
}

QString Scanner::name(const Token &tag) const
{
    int end = tag.contentStart;
    while (end < tag.contentEnd && !m_text.at(end).isSpace())
        ++end;
    return m_text.mid(tag.contentStart, end - tag.contentStart);
}

bool Scanner::attributes(const Token &tag, QVector<NameValue> *attributes) const
{
    attributes->clear();
    const int end = tag.contentEnd;
    int pos = tag.contentStart + name(tag).size();
    for (;;) {
        while (pos < end && m_text.at(pos).isSpace())
            ++pos;
        if (pos >= end)
            return true;
        const int keyStart = pos;
        while (pos < end && !m_text.at(pos).isSpace() && m_text.at(pos) != QLatin1Char('='))
            ++pos;
        NameValue attribute{m_text.mid(keyStart, pos - keyStart), QString()};
        if (!isName(attribute.name))
            return false;
        if (pos < end && m_text.at(pos) == QLatin1Char('=')) {
            ++pos;
            const bool quoted = pos < end && m_text.at(pos) == QLatin1Char('"');
            const int valueStart = quoted ? ++pos : pos;
            while (pos < end && (quoted ? m_text.at(pos) != QLatin1Char('"') : !m_text.at(pos).isSpace()))
                ++pos;
            if (quoted && pos >= end)
                return false;
            attribute.value = unescapeText(m_text.mid(valueStart, pos - valueStart));
            if (quoted)
                ++pos;
        }
        attributes->append(attribute);
    }
}

QString Scanner::text(const Token &token) const
{
    const QString content = m_text.mid(token.contentStart, token.contentEnd - token.contentStart);
    if (token.kind == Token::Text)
        return unescapeText(content);
    return token.kind == Token::CData ? content : QString();
}

bool Balance::follow(const Token &token, const QString &name)
{
    if (token.kind == Token::Open) {
        if (localName(name) != QLatin1String("meta"))
            m_open.append(name);
        return true;
    }
    if (token.kind != Token::Close)
        return true;
    while (!m_open.isEmpty()) {
        const QString open = m_open.takeLast();
        if (open == name)
            return true;
        if (open != QLatin1String("a"))
            return false;
    }
    return false;
}

bool Balance::finish()
{
    while (!m_open.isEmpty() && m_open.last() == QLatin1String("a"))
        m_open.removeLast();
    return m_open.isEmpty();
}

bool isWellFormed(const QString &text)
{
    Scanner scanner(text);
    Balance balance;
    QVector<NameValue> attributes;
    for (;;) {
        const Token token = scanner.next();
        switch (token.kind) {
        case Token::End:
            return balance.finish();
        case Token::Error:
            return false;
        case Token::Open:
        case Token::Empty:
            if (!scanner.attributes(token, &attributes))
                return false;
            balance.follow(token, scanner.name(token));
            break;
        case Token::Close:
            if (!balance.follow(token, scanner.name(token)))
                return false;
            break;
        default:
            break;
        }
    }
}

} // namespace Zeko
} // namespace Newsroom
