#include "MarkupWalk.h"

namespace Tool {

bool MarkupWalk::next()
{
    if (m_node->m_Child) {
        m_node = m_node->m_Child;
        ++m_depth;
        return true;
    }
    while (m_node != m_root && !m_node->m_Next) {
        m_node = m_node->m_Parent;
        --m_depth;
    }
    if (m_node == m_root)
        return false;
    m_node = m_node->m_Next;
    return true;
}

} // namespace Tool
