#include "TextWidth.h"

#include <algorithm>
#include <iterator>

#include <QStringList>

namespace Tool {

namespace {

struct Range
{
    uint first;
    uint last;
};

// The characters that Unicode 14 calls Wide or Fullwidth; unassigned characters between two of them are taken along.
// clang-format off
constexpr Range wideRanges[] = {
    {0x1100, 0x115F}, {0x231A, 0x231B}, {0x2329, 0x232A}, {0x23E9, 0x23EC}, {0x23F0, 0x23F0}, {0x23F3, 0x23F3},
    {0x25FD, 0x25FE}, {0x2614, 0x2615}, {0x2648, 0x2653}, {0x267F, 0x267F}, {0x2693, 0x2693}, {0x26A1, 0x26A1},
    {0x26AA, 0x26AB}, {0x26BD, 0x26BE}, {0x26C4, 0x26C5}, {0x26CE, 0x26CE}, {0x26D4, 0x26D4}, {0x26EA, 0x26EA},
    {0x26F2, 0x26F3}, {0x26F5, 0x26F5}, {0x26FA, 0x26FA}, {0x26FD, 0x26FD}, {0x2705, 0x2705}, {0x270A, 0x270B},
    {0x2728, 0x2728}, {0x274C, 0x274C}, {0x274E, 0x274E}, {0x2753, 0x2755}, {0x2757, 0x2757}, {0x2795, 0x2797},
    {0x27B0, 0x27B0}, {0x27BF, 0x27BF}, {0x2B1B, 0x2B1C}, {0x2B50, 0x2B50}, {0x2B55, 0x2B55}, {0x2E80, 0x303E},
    {0x3041, 0x3247}, {0x3250, 0x4DBF}, {0x4E00, 0xA4C6}, {0xA960, 0xA97C}, {0xAC00, 0xD7A3}, {0xF900, 0xFAD9},
    {0xFE10, 0xFE6B}, {0xFF01, 0xFF60}, {0xFFE0, 0xFFE6}, {0x16FE0, 0x1B2FB}, {0x1F004, 0x1F004},
    {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F200, 0x1F320}, {0x1F32D, 0x1F335},
    {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0},
    {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D},
    {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4},
    {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2}, {0x1F6D5, 0x1F6DF},
    {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7F0}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945},
    {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAF6}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD},
};
// clang-format on

constexpr uint softHyphen = 0x00AD;
constexpr uint zeroWidthJoiner = 0x200D;
constexpr uint emojiPresentation = 0xFE0F;
constexpr QChar ellipsis(0x2026);

bool isWide(uint character)
{
    const auto *range = std::lower_bound(std::begin(wideRanges), std::end(wideRanges), character,
                                         [](const Range &candidate, uint value) { return candidate.last < value; });
    return range != std::end(wideRanges) && range->first <= character;
}

bool isRegionalIndicator(uint character)
{
    return character >= 0x1F1E6 && character <= 0x1F1FF;
}

bool isSkinTone(uint character)
{
    return character >= 0x1F3FB && character <= 0x1F3FF;
}

bool isInvisible(uint character)
{
    // The vowels and finals of a decomposed Korean syllable are drawn into the cell of its first letter.
    if (character >= 0x1160 && character <= 0x11FF)
        return true;
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        return character != softHyphen;
    default:
        return false;
    }
}

int characterWidth(uint character)
{
    if (isInvisible(character))
        return 0;
    return isWide(character) ? 2 : 1;
}

/// Walks a text by what a terminal shows in one place: the next place starts at position() and takes width() columns.
class Places
{
public:
    explicit Places(const QString &text, int start = 0)
        : m_text(text)
        , m_position(start)
        , m_end(start)
    {}

    /// Goes to the next place; false at the end of the text.
    bool next()
    {
        m_position = m_end;
        if (m_position >= m_text.size())
            return false;
        const uint first = take();
        m_width = characterWidth(first);
        if (isRegionalIndicator(first) && isRegionalIndicator(peek())) {
            take();
            m_width = 2;
        }
        takeFollowers();
        return true;
    }

    int position() const { return m_position; }
    int end() const { return m_end; }
    int width() const { return m_width; }

private:
    uint peek() const
    {
        if (m_end >= m_text.size())
            return 0;
        const QChar unit = m_text.at(m_end);
        if (unit.isHighSurrogate() && m_end + 1 < m_text.size() && m_text.at(m_end + 1).isLowSurrogate())
            return QChar::surrogateToUcs4(unit, m_text.at(m_end + 1));
        return unit.unicode();
    }

    uint take()
    {
        const uint character = peek();
        m_end += QChar::requiresSurrogates(character) ? 2 : 1;
        return character;
    }

    void takeFollowers()
    {
        while (m_end < m_text.size()) {
            const uint character = peek();
            const bool joined = m_width == 2 && isSkinTone(character);
            if (!joined && (!isInvisible(character) || QChar::category(character) == QChar::Other_Control))
                return;
            take();
            if (character == emojiPresentation && m_width == 1)
                m_width = 2;
            if (character == zeroWidthJoiner && m_width == 2 && isWide(peek()))
                take();
        }
    }

    const QString &m_text;
    int m_position;
    int m_end;
    int m_width = 0;
};

bool isRightToLeft(uint character)
{
    switch (QChar::direction(character)) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirRLI:
        return true;
    default:
        return false;
    }
}

/// Where the line that starts at \a start ends and the next one starts.
struct Break
{
    int end;
    int next;
};

Break breakAfter(const QString &text, int start, int columns)
{
    Places places(text, start);
    int used = 0;
    int fits = start;
    int blank = -1;
    while (places.next()) {
        const bool isBlank = text.at(places.position()) == QLatin1Char(' ');
        // A blank right behind the last place that fits is as good a break as one before it.
        if (isBlank && places.position() > start)
            blank = places.position();
        if (used + places.width() > columns && fits > start)
            return blank > start ? Break{blank, blank + 1} : Break{fits, fits};
        used += places.width();
        fits = places.end();
    }
    return {text.size(), text.size() + 1};
}

void wrapLine(const QString &line, int columns, QStringList &lines)
{
    int start = 0;
    do {
        const Break found = breakAfter(line, start, columns);
        lines += line.mid(start, found.end - start);
        start = found.next;
    } while (start <= line.size());
}

} // namespace

int textWidth(const QString &text)
{
    Places places(text);
    int width = 0;
    while (places.next())
        width += places.width();
    return width;
}

QString fitText(const QString &text, int columns)
{
    if (columns < 1)
        return QString();
    Places places(text);
    int used = 0;
    int cut = 0;
    while (places.next()) {
        if (used + places.width() > columns)
            return text.left(cut) + ellipsis;
        used += places.width();
        if (used < columns)
            cut = places.end();
    }
    return text;
}

QString padText(const QString &text, int columns)
{
    return text + QString(std::max(0, columns - textWidth(text)), QLatin1Char(' '));
}

QString padTextLeft(const QString &text, int columns)
{
    return QString(std::max(0, columns - textWidth(text)), QLatin1Char(' ')) + text;
}

QString isolate(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    if (std::none_of(characters.begin(), characters.end(), isRightToLeft))
        return text;
    return QChar(0x2068) + text + QChar(0x2069);
}

QString visible(const QString &text)
{
    QString result = text;
    for (QChar &unit : result) {
        if (unit < QLatin1Char(' '))
            unit = QChar(0x2400 + unit.unicode());
        else if (unit == QChar(0x7F))
            unit = QChar(0x2421);
        else if (unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
                 unit == QChar::ParagraphSeparator)
            unit = QChar::ReplacementCharacter;
    }
    return result;
}

QStringList wrapText(const QString &text, int columns)
{
    QStringList lines;
    for (const QString &line : text.split(QLatin1Char('\n')))
        wrapLine(line, std::max(columns, 2), lines);
    return lines;
}

} // namespace Tool
