#pragma once

/// \file
/// Builds a tree from its beginning to its end, remembering where the next node goes.

#include <QVarLengthArray>

#include <quire/markup/Tag.h>

namespace XML {

/// Appends nodes to the open element. Keeps the last child of every open element at hand, so that appending does not
/// walk the list. Lives on the stack of the function that builds the tree, which it does not own.
class TreeBuilder
{
public:
    /// Begins with \a root open; new nodes follow the children it has. A root of a host's own class gets its children
    /// through its AddTag.
    explicit TreeBuilder(Tag *root);

    /// The open element.
    Tag *parent() const { return m_Open.last().parent; }

    /// Makes \a node the last child of the open element.
    void append(Tag *node)
    {
        Level &level = m_Open.last();
        if (level.foreign) {
            level.parent->AddTag(node, false);
            return;
        }
        node->m_Parent = level.parent;
        (level.last ? level.last->m_Next : level.parent->m_Child) = node;
        level.last = node;
    }

    /// Opens \a node, which has no children yet.
    void open(Tag *node);

    /// Closes the open element. False when it was the root, which stays open.
    bool close()
    {
        if (m_Open.size() == 1)
            return false;
        m_Open.removeLast();
        return true;
    }

private:
    struct Level
    {
        Tag *parent;
        Tag *last;
        bool foreign;
    };

    QVarLengthArray<Level, 64> m_Open;
};

} // namespace XML
