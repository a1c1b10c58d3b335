#include <quire/tree/Item.h>

#include <algorithm>
#include <utility>

#include <quire/story/Story.h>

namespace Quire {

Item::Item(const QString &itemName, ItemType itemType)
    : name(itemName)
    , type(itemType)
{}

Item::Item(const Item &other) = default;
Item::Item(Item &&other) noexcept = default;
Item &Item::operator=(const Item &other) = default;
Item &Item::operator=(Item &&other) noexcept = default;
Item::~Item() = default;

void Item::RetrieveAttrs(std::vector<Attribute> &inOut)
{
    if (type == Item_Story && !storyAttrsExpanded) {
        ProcessStoryAttributes();
        storyAttrsExpanded = true;
    }
    for (Attribute &wanted : inOut) {
        const int index = FindAttr(wanted.name);
        if (index >= 0)
            wanted.value = attributes[static_cast<std::size_t>(index)].value;
    }
}

void Item::AddAttr(const Attribute &attribute)
{
    attributes.push_back(attribute);
}

void Item::AddAttr(const QString &attributeName, const QString &value, int flags)
{
    attributes.push_back({attributeName, value, flags});
}

int Item::FindAttr(const QString &wanted) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const Attribute &attribute) { return attribute.name == wanted; });
    return found == attributes.end() ? -1 : static_cast<int>(found - attributes.begin());
}

bool Item::FindAttr(const QString &wanted, Attribute &attribute) const
{
    return GetAttr(FindAttr(wanted), attribute);
}

bool Item::GetAttr(int index, Attribute &attribute) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= attributes.size())
        return false;
    attribute = attributes[static_cast<std::size_t>(index)];
    return true;
}

void Item::RemoveAttr(int index)
{
    if (index < 0 || attributes.empty())
        return;
    attributes.erase(attributes.begin() + index);
}

bool Item::operator==(const Item &other) const
{
    return sortKey == other.sortKey;
}

bool Item::operator<(const Item &other) const
{
    return sortKey < other.sortKey;
}

/// Moves the value of the first attribute called \a key out and removes the attribute; false when there is none.
bool Item::TakeAttr(const QString &key, QString &value)
{
    const int index = FindAttr(key);
    if (index < 0)
        return false;
    value = std::move(attributes[static_cast<std::size_t>(index)].value);
    RemoveAttr(index);
    return true;
}

void Item::ProcessStoryAttributes()
{
    const std::size_t usualCount = 36; // of header and fields together, still a small piece of memory: growing is slow
    attributes.reserve(attributes.size() + usualCount);
    QString packed;
    if (TakeAttr(QLatin1String(Attr_Header), packed))
        Story::InitStoryHeaderAttributes(*this, packed);
    if (TakeAttr(QLatin1String(Attr_Fields), packed))
        Story::InitStoryFieldAttributes(*this, packed);
}

} // namespace Quire
