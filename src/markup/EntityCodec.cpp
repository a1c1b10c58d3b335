#include "EntityCodec.h"

#include <array>

#include <QStringView>

#include "TextSearch.h"

namespace XML {

namespace {

/// How every character is written. Asking Qt for the properties of a character takes a look into its tables in another
/// library; one table of our own, made at first use, makes the writer several times as fast.
class CharacterTable
{
public:
    enum Kind : quint8 { Plain, Quote, Special };

    CharacterTable()
    {
        for (int code = 1; code <= 0xFFFF; ++code)
            m_Kinds[std::size_t(code)] = kindOf(QChar{ushort(code)});
    }

    Kind operator[](QChar c) const { return m_Kinds[c.unicode()]; }

private:
    static Kind kindOf(QChar c)
    {
        if (c == QLatin1Char('"') || c == QLatin1Char('\''))
            return Quote;
        const bool markup = c == QLatin1Char('&') || c == QLatin1Char('<') || c == QLatin1Char('>');
        return !c.isSpace() && (markup || !c.isPrint()) ? Special : Plain;
    }

    std::array<Kind, 0x10000> m_Kinds{};
};

const CharacterTable &characterTable()
{
    static const CharacterTable table;
    return table;
}

/// The last kind of character that is written as it stands.
CharacterTable::Kind lastPlain(bool zeko)
{
    return zeko ? CharacterTable::Quote : CharacterTable::Plain;
}

/// The number in the reference for \a c: the low byte as a signed number, widened to 16 bits; 0 above U+00FF.
ushort referenceNumber(ushort c)
{
    if (c > 0xFF)
        return 0;
    return ushort(c < 0x80 ? c : c + 0xFF00);
}

void putNumber(TextSink &sink, ushort number)
{
    std::array<QChar, 5> digits;
    auto first = digits.end();
    do
        *--first = QChar(ushort('0' + number % 10));
    while ((number = ushort(number / 10)) != 0);
    sink.put(&*first, int(digits.end() - first));
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
        sink.put(u"&#");
        putNumber(sink, referenceNumber(c));
        return sink.put(u";");
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

} // namespace

bool isSpecial(QChar c, bool zeko)
{
    return characterTable()[c] > lastPlain(zeko);
}

const QChar *findSpecial(const QChar *begin, const QChar *end, bool zeko)
{
    const CharacterTable &table = characterTable();
    const CharacterTable::Kind plain = lastPlain(zeko);
    while (begin != end && table[*begin] <= plain)
        ++begin;
    return begin;
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
        keep(findChar(from, end, u'&'));
        const QChar *semicolon = findChar(from, end, u';');
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
