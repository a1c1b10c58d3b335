#include <quire/session/StoryID.h>

#include <QStringRef>

#include <array>
#include <charconv>

namespace Quire {

namespace {

/// Appends a number to ASCII text that has room for it.
char *append(char *end, int number)
{
    const int longest = 11; // -2147483648
    return std::to_chars(end, end + longest, number).ptr;
}

/// The number before the next colon of \a text, which is cut off with it; 0 when there is none.
int takeNumber(QStringRef *text, int base)
{
    const int colon = text->indexOf(QLatin1Char(':'));
    const QStringRef number = text->left(colon);
    *text = colon < 0 ? QStringRef() : text->mid(colon + 1);
    return number.toInt(nullptr, base);
}

} // namespace

// Both conversions run for each story of a queue that is loaded, so they make no texts on the way.

QString StoryID2String(const StoryID &id, bool full)
{
    constexpr std::size_t longest = 36; // three numbers and what separates them
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

void String2StoryID(const QString &text, StoryID *id, int base)
{
    if (!id)
        return;
    QStringRef numbers = text.midRef(text.indexOf(QLatin1Char(' ')) + 1);
    id->part1 = takeNumber(&numbers, base);
    id->part2 = takeNumber(&numbers, base);
    id->part3 = takeNumber(&numbers, base);
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
