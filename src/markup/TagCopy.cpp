#include "TagCopy.h"

#include "NodeArena.h"
#include "TagKind.h"

namespace XML {

namespace {

Tag *copyTo(NodeArena &arena, const Tag &tag)
{
    switch (kindOf(tag)) {
    case TagKind::Named:
        return arena.make<NamedTag>(static_cast<const NamedTag &>(tag));
    case TagKind::Text:
        return arena.make<TextTag>(static_cast<const TextTag &>(tag));
    case TagKind::Extra:
        return arena.make<ExtraTag>(static_cast<const ExtraTag &>(tag));
    default:
        return arena.make<Tag>(tag);
    }
}

} // namespace

Tag *withoutLinks(Tag *copy)
{
    copy->m_Child = nullptr;
    copy->m_Next = nullptr;
    copy->m_Parent = nullptr;
    return copy;
}

Tag *copyOfOurs(const Tag &tag, NodeArena &arena)
{
    return withoutLinks(copyTo(arena, tag));
}

} // namespace XML
