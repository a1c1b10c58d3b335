#pragma once

/// \file
/// The flags of directories and queues. Not part of the public surface.

#include <quire/platform/Automation.h>
#include <quire/tree/Item.h>

namespace Quire {

/// The three flag words of an entry, as the server gives them. A plain value.
struct EntryFlags
{
    LONG word1 = 0;
    LONG word2 = 0;
    LONG word3 = 0;

    /// Whether the flag \a key, one of the `Attr_*` constants, is set. Any other pointer is no flag.
    bool has(const char *key) const;
    /// An edit lock rather than a full one.
    bool isEditLock() const;
    /// The queue tells its changes.
    bool isLive() const;
    /// Adds an attribute to \a item for each flag that is set.
    void addTo(Item &item) const;
};

/// Reads the flags of a directory or queue with its own call.
template<typename Pointer>
HRESULT readFlags(const Pointer &entry, EntryFlags *flags)
{
    return entry->get_Flags(&flags->word1, &flags->word2, &flags->word3);
}

} // namespace Quire
