#include "TagSort.h"

#include <array>
#include <utility>

namespace XML {

namespace {

using Compare = short (*)(Tag *, Tag *, void *);

/// Merges two sorted lists; of equal nodes those of \a earlier come first.
Tag *merged(Tag *earlier, Tag *later, Compare compare, void *context)
{
    Tag *first = nullptr;
    Tag **end = &first;
    while (earlier && later) {
        Tag *&smaller = compare(later, earlier, context) < 0 ? later : earlier;
        *end = smaller;
        end = &smaller->m_Next;
        smaller = smaller->m_Next;
    }
    *end = earlier ? earlier : later;
    return first;
}

} // namespace

Tag *sortSiblings(Tag *first, Compare compare, void *context)
{
    // Place i holds a sorted list of 2^i nodes or none; lists in higher places come from earlier in the input.
    std::array<Tag *, 64> sorted{};
    while (first) {
        Tag *run = std::exchange(first, first->m_Next);
        run->m_Next = nullptr;
        std::size_t place = 0;
        for (; sorted[place]; ++place)
            run = merged(std::exchange(sorted[place], nullptr), run, compare, context);
        sorted[place] = run;
    }
    Tag *all = nullptr;
    for (Tag *list : sorted) {
        if (list)
            all = merged(list, all, compare, context);
    }
    return all;
}

} // namespace XML
