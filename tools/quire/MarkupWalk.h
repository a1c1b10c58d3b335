#pragma once

#include <quire/XML.h>

namespace Tool {

/// Visits the nodes below the root of a markup tree in document order, without recursion. The tree outlives the walk
/// and stays as it is meanwhile.
class MarkupWalk
{
public:
    explicit MarkupWalk(XML::Tag &root)
        : m_root(&root)
        , m_node(&root)
    {}

    /// Goes to the next node; false when there is none left.
    bool next();

    XML::Tag &node() const { return *m_node; }
    /// Levels below the root: 1 for its children.
    int depth() const { return m_depth; }

private:
    XML::Tag *m_root;
    XML::Tag *m_node;
    int m_depth = 0;
};

} // namespace Tool
