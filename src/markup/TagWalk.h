#pragma once

/// \file
/// The walk that all operations over subtrees share. It keeps its place on the heap, not on the stack.

#include <QVarLengthArray>

#include <quire/markup/Tag.h>

namespace XML {

/// What a walk does after it has entered a node.
enum class Walk {
    Enter,      ///< Goes on with the node's children.
    Pass,       ///< Goes on with the node's next sibling.
    LeaveLevel, ///< Goes on behind the node's parent.
    Stop        ///< Ends.
};

/// Visits \a first, its descendants, its following siblings and theirs in document order. \a enter is called at each
/// node and answers a Walk; \a leave once the children of an entered node are done. Follows only the links to children
/// and siblings, and reads those of a node when it is done with what lies before them, so that a visitor may change
/// what is still ahead.
template<class Enter, class Leave>
void walkForest(Tag *first, Enter enter, Leave leave)
{
    QVarLengthArray<Tag *, 64> open;
    Tag *node = first;
    for (;;) {
        while (node) {
            const Walk walk = enter(node);
            if (walk == Walk::Stop)
                return;
            if (walk == Walk::LeaveLevel)
                break;
            if (walk == Walk::Enter) {
                if (Tag *child = node->m_Child) {
                    open.append(node);
                    node = child;
                    continue;
                }
                leave(node);
            }
            node = node->m_Next;
        }
        if (open.isEmpty())
            return;
        node = open.last();
        open.removeLast();
        leave(node);
        node = node->m_Next;
    }
}

/// The walk for visitors that do nothing on leaving a node.
template<class Enter>
void walkForest(Tag *first, Enter enter)
{
    walkForest(first, enter, [](Tag *) {});
}

} // namespace XML
