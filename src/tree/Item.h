#pragma once

/// \file
/// One entry of a list.

#include <QString>

#include <vector>

#include <quire/platform/Export.h>
#include <quire/tree/Attribute.h>
#include <quire/tree/AttributeKeys.h>

namespace Quire {

/// What an item stands for.
enum ItemType {
    Item_Directory = 1, ///< A directory.
    Item_Queue = 2,     ///< A queue.
    Item_Story = 3,     ///< A story of a queue.
    Item_SearchHit = 4  ///< A story that a search found.
};

/// An entry that the library hands to the host in a list: a name, a kind and an open-ended row of attributes.
///
/// A value: lists keep items by value, and copies are independent. Whoever holds an item uses it on one thread at a
/// time; that of a list, while holding the list's lock. No operation calls the server, and none raises.
class QUIRE_EXPORT Item
{
public:
    /// Without attributes and with an empty sort key.
    Item(const QString &name, ItemType type);
    /// A copy; texts are shared.
    Item(const Item &other);
    /// Leaves \a other without attributes.
    Item(Item &&other) noexcept;
    /// A copy; texts are shared.
    Item &operator=(const Item &other);
    /// Leaves \a other without attributes.
    Item &operator=(Item &&other) noexcept;
    virtual ~Item();

    /// Overwrites the value of each entry of \a inOut for whose name the item has an attribute with the first such
    /// attribute's value. Names and flags stay, and so do the values of entries that the item lacks: put the default
    /// there beforehand.
    ///
    /// The first call on a story item expands its packed attributes, header before fields, into one attribute each,
    /// behind those that are there already; see Story::InitStoryItem. Later calls do not, whatever was added meanwhile.
    virtual void RetrieveAttrs(std::vector<Attribute> &inOut);

    /// Appends a copy of \a attribute. Names may repeat; look-ups take the first.
    void AddAttr(const Attribute &attribute);
    /// Appends an attribute made of the three.
    void AddAttr(const QString &name, const QString &value, int flags = 0);

    /// Index of the first attribute called exactly \a name, -1 when there is none.
    int FindAttr(const QString &name) const;
    /// Copies the first attribute called exactly \a name. False when there is none; \a attribute is then left alone.
    bool FindAttr(const QString &name, Attribute &attribute) const;
    /// Copies the attribute at \a index. False when there is none; \a attribute is then left alone.
    bool GetAttr(int index, Attribute &attribute) const;
    /// Erases the attribute at \a index; later ones move down. Nothing happens for a negative index or an item without
    /// attributes. An index past the end is the caller's mistake and is not checked.
    void RemoveAttr(int index);

    /// Same sort key. Nothing else is compared.
    bool operator==(const Item &other) const;
    /// This sort key comes first in plain order of UTF-16 code units.
    bool operator<(const Item &other) const;

    QString name;                      ///< The entry's name as the server gives it.
    ItemType type;                     ///< The kind of entry.
    QString sortKey;                   ///< What is compared; only search hits get one from the library.
    std::vector<Attribute> attributes; ///< In the order in which they were added.
    bool storyAttrsExpanded = false;   ///< The packed attributes of a story have been expanded.

private:
    void ProcessStoryAttributes();
    bool TakeAttr(const QString &key, QString &value);
};

} // namespace Quire
