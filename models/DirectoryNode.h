#pragma once

/// \file
/// An entry of the tree that DirectoryModel shows. Not part of the public surface.

#include <memory>
#include <utility>
#include <vector>

#include <quire/tree/Item.h>

#include "RowSteps.h"

namespace Quire {

/// A directory or queue with what has been read of its entries, which it owns. Of the model's thread.
class DirectoryNode
{
public:
    enum State { Unread, Reading, Read };

    DirectoryNode(DirectoryNode *parent, Item item);
    ~DirectoryNode();
    DirectoryNode(const DirectoryNode &) = delete;
    DirectoryNode &operator=(const DirectoryNode &) = delete;

    DirectoryNode *parent() const { return m_parent; }
    int row() const { return m_row; }
    int size() const { return static_cast<int>(m_children.size()); }
    DirectoryNode *child(int row) const { return m_children[static_cast<std::size_t>(row)].get(); }

    const Item &item() const { return m_item; }
    /// Takes the attributes of another reading of the same entry; false when they are the same.
    bool update(const Item &item);
    bool isDirectory() const { return m_item.type == Item_Directory; }
    /// The value of an attribute, null without it.
    QString attribute(const char *key) const;
    /// Whether there are, or may be, entries.
    bool mayHaveChildren() const;

    State state() const { return m_state; }
    void setState(State state)
    {
        m_state = state;
        m_wasAsked = m_wasAsked || state == Reading;
    }
    /// It has been read before, or was to be and could not.
    bool wasAsked() const { return m_wasAsked; }
    /// It has been read before, perhaps in vain since.
    bool wasRead() const { return m_wasRead; }
    void setWasRead() { m_wasRead = true; }

    /// It is to be read once more when the reading that goes on has ended.
    void setOutdated() { m_outdated = true; }
    /// Whether that is so, which is forgotten.
    bool takeOutdated() { return std::exchange(m_outdated, false); }

    /// Makes one step towards \a entries; see rowSteps. What goes is given to \a removed.
    void apply(const RowStep &step, const std::vector<Item> &entries,
               std::vector<std::unique_ptr<DirectoryNode>> *removed);

private:
    using Children = std::vector<std::unique_ptr<DirectoryNode>>;

    void numberChildren(int first);

    DirectoryNode *const m_parent;
    Item m_item;
    State m_state = Unread;
    bool m_wasAsked = false;
    bool m_wasRead = false;
    bool m_outdated = false;
    int m_row = 0;
    Children m_children;
};

} // namespace Quire
