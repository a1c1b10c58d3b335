#include "DirectoryNode.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Quire {

DirectoryNode::DirectoryNode(DirectoryNode *parent, Item item)
    : m_parent(parent)
    , m_item(std::move(item))
{}

/// Whatever the depth, by way of a list: each child goes without children.
DirectoryNode::~DirectoryNode()
{
    Children going = std::move(m_children);
    while (!going.empty()) {
        const std::unique_ptr<DirectoryNode> last = std::move(going.back());
        going.pop_back();
        std::move(last->m_children.begin(), last->m_children.end(), std::back_inserter(going));
        last->m_children.clear();
    }
}

bool DirectoryNode::update(const Item &item)
{
    const auto &before = m_item.attributes;
    const auto &now = item.attributes;
    const bool same =
        std::equal(before.begin(), before.end(), now.begin(), now.end(),
                   [](const Attribute &a, const Attribute &b) { return a.name == b.name && a.value == b.value; });
    if (!same)
        m_item = item;
    return !same;
}

QString DirectoryNode::attribute(const char *key) const
{
    Attribute found;
    if (!m_item.FindAttr(QLatin1String(key), found))
        return QString();
    return found.value.isNull() ? QLatin1String("") : found.value;
}

bool DirectoryNode::mayHaveChildren() const
{
    if (!m_children.empty())
        return true;
    // One without a name could only be asked for as the root.
    return isDirectory() && m_state != Read && !m_item.name.isEmpty() && attribute(Attr_NumItems) != QLatin1String("0");
}

void DirectoryNode::apply(const RowStep &step, const std::vector<Item> &entries,
                          std::vector<std::unique_ptr<DirectoryNode>> *removed)
{
    const auto first = m_children.begin() + step.first;
    switch (step.kind) {
    case RowStep::Remove:
        std::move(first, first + step.count, std::back_inserter(*removed));
        m_children.erase(first, first + step.count);
        break;
    case RowStep::Insert: {
        Children arrived;
        const auto source = entries.begin() + step.source;
        for (auto entry = source; entry != source + step.count; ++entry)
            arrived.push_back(std::make_unique<DirectoryNode>(this, *entry));
        m_children.insert(first, std::make_move_iterator(arrived.begin()), std::make_move_iterator(arrived.end()));
        break;
    }
    case RowStep::Move:
        if (step.to > step.first)
            std::rotate(first, first + step.count, m_children.begin() + step.to);
        else
            std::rotate(m_children.begin() + step.to, first, first + step.count);
        break;
    }
    numberChildren(step.kind == RowStep::Move ? std::min(step.first, step.to) : step.first);
}

void DirectoryNode::numberChildren(int first)
{
    for (int row = first; row < size(); ++row)
        child(row)->m_row = row;
}

} // namespace Quire
