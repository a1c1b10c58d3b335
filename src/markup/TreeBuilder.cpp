#include "TreeBuilder.h"

#include "TagKind.h"

namespace XML {

TreeBuilder::TreeBuilder(Tag *root)
{
    open(root);
    m_Open.last().last = root->LastChild();
}

void TreeBuilder::open(Tag *node)
{
    m_Open.append({node, nullptr, kindOf(*node) == TagKind::Foreign});
}

} // namespace XML
