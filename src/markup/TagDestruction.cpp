#include "TagDestruction.h"

#include <utility>

#include "TagKind.h"

namespace XML::TagDestruction {

namespace {

/// The node of a host's class that a walk of this thread is destroying right now, and the children it gave back.
struct Handover
{
    const Tag *dying = nullptr;
    Tag *children = nullptr;
};

thread_local Handover *t_Handover = nullptr;

/// Destroys \a tag alone and answers the children that it left behind.
Tag *destroyForeign(Tag *tag)
{
    Handover handover{tag, nullptr};
    Handover *const outer = std::exchange(t_Handover, &handover);
    delete tag;
    t_Handover = outer;
    return handover.children;
}

/// Puts the list \a orphans, whose parent is gone, before the list \a rest.
Tag *joined(Tag *orphans, Tag *rest)
{
    Tag *first = orphans;
    Tag **link = &first;
    for (; *link; link = &(*link)->m_Next)
        (*link)->m_Parent = nullptr;
    *link = rest;
    return first;
}

} // namespace

void destroyForest(Tag *first)
{
    // The way back up is kept in the dying nodes: m_Parent of a first child leads to the element being left.
    Tag *above = nullptr;
    Tag *node = first;
    for (;;) {
        while (node) {
            if (kindOf(*node) == TagKind::Foreign) {
                Tag *next = node->m_Next;
                node = joined(destroyForeign(node), next);
            } else if (Tag *child = std::exchange(node->m_Child, nullptr)) {
                node->m_Parent = std::exchange(above, node);
                node = child;
            } else {
                delete std::exchange(node, node->m_Next);
            }
        }
        if (!above)
            return;
        // Its children are gone: what is left of it is one more leaf, followed by its own siblings.
        node = std::exchange(above, above->m_Parent);
    }
}

void destroyChildren(Tag &tag)
{
    Tag *children = std::exchange(tag.m_Child, nullptr);
    if (t_Handover && t_Handover->dying == &tag)
        t_Handover->children = children;
    else
        destroyForest(children);
}

} // namespace XML::TagDestruction
