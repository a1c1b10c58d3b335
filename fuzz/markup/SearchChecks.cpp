#include <algorithm>
#include <memory>
#include <vector>

#include <quire/XML.h>

#include "MarkupChecks.h"
#include "fuzz/Input.h"

namespace MarkupFuzz {

namespace {

using XML::Tag;

struct Wanted
{
    QString name;
    QString attribute;
    QString value;

    bool fits(Tag *node) const
    {
        const auto *element = dynamic_cast<XML::NamedTag *>(node);
        if (!element || element->m_Name != name)
            return false;
        return attribute.isNull() || value.isNull() || element->m_Attributes.value(attribute) == value;
    }
};

/// All nodes, in document order.
std::vector<Tag *> nodesOf(Tag *root)
{
    std::vector<Tag *> nodes;
    std::vector<Tag *> waiting{root};
    while (!waiting.empty()) {
        Tag *const node = waiting.back();
        waiting.pop_back();
        nodes.push_back(node);
        const auto first = static_cast<std::ptrdiff_t>(waiting.size());
        for (Tag *child = node->m_Child; child; child = child->m_Next)
            waiting.push_back(child);
        std::reverse(waiting.begin() + first, waiting.end());
    }
    return nodes;
}

bool isBelow(const Tag *node, const QString &name)
{
    for (const Tag *above = node->m_Parent; above; above = above->m_Parent) {
        const auto *element = dynamic_cast<const XML::NamedTag *>(above);
        if (element && element->m_Name == name)
            return true;
    }
    return false;
}

std::vector<Tag *> foundOneByOne(Tag &root, const Wanted &wanted)
{
    std::vector<Tag *> found;
    for (Tag *tag = root.FindTag(wanted.name, wanted.attribute, wanted.value); tag;
         tag = Tag::FindNextTag(tag, wanted.name, wanted.attribute, wanted.value))
        found.push_back(tag);
    return found;
}

QString checkNumbered(Tag &root, const Wanted &wanted, const std::vector<Tag *> &expected)
{
    const int last = std::min(static_cast<int>(expected.size()), 20);
    for (int n = 0; n <= last; ++n) {
        Tag *const tag = root.FindNthTag(wanted.name, n, wanted.attribute, wanted.value, true);
        const auto index = static_cast<std::size_t>(n);
        Tag *const there = index < expected.size() && !wanted.name.isEmpty() ? expected[index] : nullptr;
        if (tag != there)
            return QStringLiteral("another match number %1").arg(n);
    }
    return QString();
}

QString wanted(const QString &line)
{
    return line == QLatin1String("-") ? QString() : QLatin1String("") + line;
}

} // namespace

QString checkSearch(const QString &text)
{
    const QStringList lines = Fuzz::linesOf(text, 3);
    const Wanted asked{lines[0], wanted(lines[1]), wanted(lines[2])};
    const std::unique_ptr<Tag> root(XML::Parser().Parse(lines[3]));
    const std::vector<Tag *> nodes = nodesOf(root.get());
    std::vector<Tag *> expected;
    std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(expected), [&](Tag *node) { return asked.fits(node); });
    if (foundOneByOne(*root, asked) != expected)
        return QStringLiteral("not the elements that match");
    Tag *const first = expected.empty() ? nullptr : expected.front();
    if (root->FindChildTag(asked.name, asked.attribute, asked.value) != first)
        return QStringLiteral("another first child");
    if (root->FindTagText(asked.name, asked.attribute, asked.value) !=
        (first ? first->GetEnclosedTextItem() : QString()))
        return QStringLiteral("another text");
    for (Tag *node : nodes) {
        if (node->IsChildOf(asked.name) != isBelow(node, asked.name))
            return QStringLiteral("another opinion about what is above");
    }
    return checkNumbered(*root, asked, expected);
}

} // namespace MarkupFuzz
