#include "TreeWalk.h"

namespace Tool {

TreeWalk::TreeWalk(const TreeEntry &root, int levels)
    : m_entry(root)
    , m_levels(levels)
{}

bool TreeWalk::next()
{
    if (m_depth < 0) {
        m_depth = 0;
        return true;
    }
    if (m_entry.isDirectory() && (m_levels < 0 || m_depth < m_levels))
        m_open.push_back({m_entry, 0});
    while (!m_open.empty() && m_open.back().visited >= m_open.back().directory.count)
        m_open.pop_back();
    if (m_open.empty())
        return false;
    m_depth = int(m_open.size());
    m_entry = readChild(m_open.back().directory, m_open.back().visited++);
    return true;
}

std::vector<bool> TreeWalk::lastOfLevels() const
{
    std::vector<bool> last;
    for (const Level &level : m_open)
        last.push_back(level.visited >= level.directory.count);
    return last;
}

} // namespace Tool
