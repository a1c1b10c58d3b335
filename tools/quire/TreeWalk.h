#pragma once

#include <vector>

#include "ServerObjects.h"

namespace Tool {

/// Walks the server's tree from one entry on, in the server's order, every directory before its entries. The depth of
/// the tree is limited by nothing but memory. Made for one walk, on one thread, while signed on.
class TreeWalk
{
public:
    /// \a levels of entries below \a root are visited; negative: all.
    TreeWalk(const TreeEntry &root, int levels);

    /// Goes to the next entry, the root at first; false after the last.
    bool next();

    const TreeEntry &entry() const { return m_entry; }
    /// 0 for the root.
    int depth() const { return m_depth; }
    /// For each level from 1 to depth(): whether the entry's ancestor there (on the last level, the entry itself) is
    /// the last one of its directory.
    std::vector<bool> lastOfLevels() const;

private:
    struct Level
    {
        TreeEntry directory;
        qint32 visited = 0;
    };

    TreeEntry m_entry;
    int m_levels;
    int m_depth = -1;
    std::vector<Level> m_open;
};

} // namespace Tool
