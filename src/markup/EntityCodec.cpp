#include "EntityCodec.h"

#include <array>
#include <bitset>
#include <memory>

#include <QStringView>

namespace XML {

namespace {

/// Which characters are special even where quotes are not. Asking Qt for the properties of a character takes a look
/// into its tables in another library; stories in other scripts than Latin would be written at half the speed.
class SpecialCharacters
{
public:
    SpecialCharacters()
    {
        for (int code = 1; code <= 0xFFFF; ++code) {
            const QChar c{ushort(code)};
            const bool markup = code == '&' || code == '<' || code == '>';
            m_Special[std::size_t(code)] = !c.isSpace() && (markup || !c.isPrint());
        }
    }

    bool contains(ushort c) const { return m_Special[c]; }

private:
    std::bitset<0x10000> m_Special;
};

bool isSpecialEverywhere(ushort c)
{
    static const SpecialCharacters special;
    return special.contains(c);
}

bool isQuote(ushort c)
{
    return c == '"' || c == '\'';
}

/// Whether \a c needs a closer look: not so for nearly all characters of a text in Latin letters. Without branches, so
/// that the compiler can look at a whole block at once.
bool isSuspect(ushort c)
{
    const bool space = ushort(c - 9U) <= 4; // Tab to carriage return.
    const bool odd = ushort(c - 0x20U) >= 0x5F;
    return (odd & !space) | (c == '&') | (c == '<') | (c == '>') | (c == '"') | (c == '\'');
}

constexpr int Block = 16;

bool isHarmlessBlock(const QChar *text)
{
    ushort codes[Block];
    std::memcpy(codes, text, sizeof codes);
    unsigned suspects = 0;
    for (const ushort code : codes)
        suspects |= unsigned(isSuspect(code));
    return suspects == 0;
}

/// The number in the reference for \a c: the low byte as a signed number, widened to 16 bits; 0 above U+00FF.
ushort referenceNumber(ushort c)
{
    if (c > 0xFF)
        return 0;
    return ushort(c < 0x80 ? c : c + 0xFF00);
}

void putReference(TextSink &sink, ushort c)
{
    switch (c) {
    case '>':
        return sink.put(u"&gt;");
    case '<':
        return sink.put(u"&lt;");
    case '&':
        return sink.put(u"&amp;");
    case '"':
        return sink.put(u"&quot;");
    case '\'':
        return sink.put(u"&apos;");
    default:
        return sink.put(QStringLiteral("&#%1;").arg(referenceNumber(c)));
    }
}

/// Whether \a name is \a lower, a word in small Latin letters, but for the case of its own Latin letters. Letters of
/// other scripts are never taken for Latin ones.
bool isWord(QStringView name, const char *lower)
{
    for (const QChar c : name) {
        const ushort code = c.unicode();
        const char small = code < 0x80 ? char(code >= 'A' && code <= 'Z' ? code + 0x20 : code) : '\0';
        if (!*lower || small != *lower++)
            return false;
    }
    return *lower == '\0';
}

/// The character that the reference &\a name; stands for, 0 for none.
ushort referencedCharacter(QStringView name)
{
    if (name.isEmpty())
        return 0;
    if (name.front() == QLatin1Char('#'))
        return name.mid(1).toString().toUShort(); // 0 for all that is no number of 16 bits.
    if (isWord(name, "gt"))
        return '>';
    if (isWord(name, "lt"))
        return '<';
    if (isWord(name, "amp"))
        return '&';
    if (isWord(name, "quot"))
        return '"';
    if (isWord(name, "apos"))
        return '\'';
    return 0;
}

const QChar *find(const QChar *begin, const QChar *end, char c)
{
    const auto at = QStringView(begin, end).indexOf(QLatin1Char(c));
    return at < 0 ? end : begin + at;
}

} // namespace

bool isSpecial(ushort c, bool zeko)
{
    return isQuote(c) ? !zeko : isSpecialEverywhere(c);
}

const QChar *findSpecial(const QChar *begin, const QChar *end, bool zeko)
{
    while (begin != end) {
        if (end - begin >= Block && isHarmlessBlock(begin)) {
            begin += Block;
            continue;
        }
        const QChar *stop = end - begin > Block ? begin + Block : end;
        for (; begin != stop; ++begin) {
            const ushort code = begin->unicode();
            if (isSuspect(code) && isSpecial(code, zeko))
                return begin;
        }
    }
    return end;
}

void putEncoded(TextSink &sink, const QChar *text, int length, bool zeko)
{
    const QChar *const end = text + length;
    for (;;) {
        const QChar *special = findSpecial(text, end, zeko);
        sink.put(text, int(special - text));
        if (special == end)
            return;
        putReference(sink, special->unicode());
        text = special + 1;
    }
}

int decode(QChar *text, int length)
{
    const QChar *const end = text + length;
    const QChar *from = text;
    QChar *to = text;
    const auto keep = [&](const QChar *until) {
        std::memmove(to, from, std::size_t(until - from) * sizeof(QChar));
        to += until - from;
        from = until;
    };
    for (;;) {
        keep(find(from, end, '&'));
        const QChar *semicolon = find(from, end, ';');
        if (semicolon == end)
            break;
        const ushort code = referencedCharacter(QStringView(from + 1, semicolon));
        from = semicolon + 1;
        if (code != 0)
            *to++ = QChar(code);
        else if (from != end)
            *to++ = *from++; // Moves into the place of the "&", behind which the search goes on.
    }
    keep(end);
    return int(to - text);
}

} // namespace XML
