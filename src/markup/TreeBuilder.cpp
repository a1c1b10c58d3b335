#include "TreeBuilder.h"

#include "TagKind.h"

namespace XML {

TreeBuilder::TreeBuilder(Tag *root)
{
    open(root);
    Tag *&last = m_Open.last().last;
    last = root->m_Child;
    while (last && last->m_Next)
        last = last->m_Next;
}

void TreeBuilder::open(Tag *node)
{
    m_Open.append({node, nullptr, kindOf(*node) == TagKind::Foreign});
}

} // namespace XML
