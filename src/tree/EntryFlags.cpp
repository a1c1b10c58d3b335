#include "EntryFlags.h"

#include <array>

#include <quire/platform/PermanentText.h>

namespace Quire {

namespace {

struct Flag
{
    const char *key;
    LONG EntryFlags::*word;
    LONG mask;
    QString name; // the key's text, made once for all items
};

const LONG editLockMask = 1 << 2; // in the third word
const LONG liveMask = 1 << 0;     // in the third word

/// In the order in which items get the attributes.
const std::array<Flag, 5> &flagTable()
{
    static const auto &table = *new const std::array<Flag, 5>{{
        // never destroyed: a worker may outlast main()
        {Attr_Indexed, &EntryFlags::word3, 1 << 6, Platform::permanentText(Attr_Indexed)},
        {Attr_Lock, &EntryFlags::word1, 1 << 1, Platform::permanentText(Attr_Lock)},
        {Attr_ConfirmEdit, &EntryFlags::word1, 1 << 6, Platform::permanentText(Attr_ConfirmEdit)},
        {Attr_Inverted, &EntryFlags::word1, 1 << 0, Platform::permanentText(Attr_Inverted)},
        {Attr_Sorted, &EntryFlags::word2, 1 << 7, Platform::permanentText(Attr_Sorted)},
    }};
    return table;
}

bool isSet(const EntryFlags &flags, const Flag &flag)
{
    return (flags.*flag.word & flag.mask) != 0;
}

} // namespace

bool EntryFlags::has(const char *key) const
{
    for (const Flag &flag : flagTable()) {
        if (flag.key == key)
            return isSet(*this, flag);
    }
    return false;
}

bool EntryFlags::isEditLock() const
{
    return (word3 & editLockMask) != 0;
}

bool EntryFlags::isLive() const
{
    return (word3 & liveMask) != 0;
}

void EntryFlags::addTo(Item &item) const
{
    for (const Flag &flag : flagTable()) {
        if (!isSet(*this, flag))
            continue;
        const bool edit = flag.key == Attr_Lock && isEditLock();
        item.attributes.push_back({flag.name, edit ? QStringLiteral("E") : QString()});
    }
}

} // namespace Quire
