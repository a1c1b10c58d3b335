#include <quire/session/StoryID.h>

#include <QStringView>

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>

#include "StoryIDText.h"

namespace Quire {

namespace {

/// Appends a number to ASCII text that has room for it.
char *append(char *end, int number)
{
    const int longest = 11; // -2147483648
    return std::to_chars(end, end + longest, number).ptr;
}

/// The number that \a text is, 0 when it is none.
int toNumber(QStringView text, int base)
{
    const int surelyFits = 9;
    const auto isDigit = [](QChar letter) { return letter >= QLatin1Char('0') && letter <= QLatin1Char('9'); };
    if (base != 10 || text.size() > surelyFits || !std::all_of(text.begin(), text.end(), isDigit))
        return text.toString().toInt(nullptr, base);
    return std::accumulate(text.begin(), text.end(), 0,
                           [](int number, QChar digit) { return number * 10 + (digit.unicode() - u'0'); });
}

/// The number before the next colon of \a text, which is cut off with it; 0 when there is none.
int takeNumber(QStringView *text, int base)
{
    const auto colon = std::find(text->begin(), text->end(), QLatin1Char(':'));
    const QStringView number(text->begin(), colon);
    *text = colon == text->end() ? QStringView() : QStringView(colon + 1, text->end());
    return toNumber(number, base);
}

} // namespace

// Both conversions run for each story of a queue that is loaded, so they make no texts on the way.

QString StoryID2String(const StoryID &id, bool full)
{
    constexpr std::size_t longest = 36; // three numbers and what separates them
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): what is read of it is written first
    std::array<char, longest> text;
    char *end = append(text.data(), id.part1);
    *end++ = ':';
    end = append(end, id.part2);
    if (full) {
        *end++ = ':';
        end = append(end, id.part3);
    }
    return QString::fromLatin1(text.data(), static_cast<int>(end - text.data()));
}

StoryID toStoryID(QStringView text, int base)
{
    QStringView numbers = text.mid(text.indexOf(QLatin1Char(' ')) + 1);
    StoryID id{};
    id.part1 = takeNumber(&numbers, base);
    id.part2 = takeNumber(&numbers, base);
    id.part3 = takeNumber(&numbers, base);
    return id;
}

void String2StoryID(const QString &text, StoryID *id, int base)
{
    if (id)
        *id = toStoryID(text, base);
}

SID_Diff_t CmpStoryID(StoryID *a, StoryID *b)
{
    if (!a || !b)
        return SID_Different;
    const bool second = a->part2 == b->part2;
    const bool third = a->part3 == b->part3;
    if (second && third)
        return a->part1 == b->part1 ? SID_Identical : SID_FirstDiffers;
    return second || third ? SID_OneDiffers : SID_Different;
}

} // namespace Quire
