#include <quire/markup/Tag.h>

#include <memory>
#include <new>
#include <utility>

#include "ForeignVisit.h"
#include "NodeArena.h"
#include "TagCopy.h"
#include "TagDestruction.h"
#include "TagKind.h"
#include "TagSort.h"
#include "TagWalk.h"
#include "TagWriter.h"
#include "TreeBuilder.h"

namespace XML {

namespace {

constexpr int LongWay = 8; // Steps to the end of a list from which on a place near the end is worth remembering.

bool isForeign(const Tag &tag)
{
    return kindOf(tag) == TagKind::Foreign;
}

/// Has \a visitor visit \a tag, its descendants, its following siblings and theirs, those of a host's class through
/// \a visitForeign, the operation that this is the walk of.
template<class VisitForeign>
void visitAll(Tag &tag, ForeignVisit::Visitor visitor, long data, VisitForeign visitForeign)
{
    const bool siblingsAwaited = ForeignVisit::reaches(tag, visitor, data);
    const auto visit = [=](Tag *node) {
        if (isForeign(*node)) {
            ForeignVisit call(*node, visitor, data);
            visitForeign(*node);
            return call.isReached() ? Walk::Pass : Walk::LeaveLevel;
        }
        if (visitor)
            visitor(node, data);
        return Walk::Enter;
    };
    if (visitor)
        visitor(&tag, data);
    walkForest(tag.m_Child, visit);
    if (!siblingsAwaited)
        walkForest(tag.m_Next, visit);
}

void clearSkip(Tag *tag, long)
{
    tag->SetSkip(false);
}

} // namespace

int Tag::FindNthTagCounter = 0;

Tag::Tag() = default;

Tag::Tag(const Tag &other)
    : m_Child(other.m_Child)
    , m_Next(other.m_Next)
    , m_Parent(other.m_Parent)
    , m_Flags(other.m_Flags)
{}

Tag &Tag::operator=(const Tag &other)
{
    if (this == &other)
        return *this;
    m_Child = other.m_Child;
    m_Next = other.m_Next;
    m_Parent = other.m_Parent;
    m_Flags = other.m_Flags;
    m_LateChild = nullptr;
    return *this;
}

Tag::~Tag()
{
    if (m_Child)
        TagDestruction::destroyChildren(*this);
}

void *Tag::operator new(std::size_t size)
{
    return NodeArena::allocateSingle(size);
}

void *Tag::operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    try {
        return NodeArena::allocateSingle(size);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

void *Tag::operator new(std::size_t size, std::align_val_t alignment)
{
    return ::operator new(size, alignment);
}

void Tag::operator delete(void *memory) noexcept
{
    if (memory)
        NodeArena::release(memory);
}

void Tag::operator delete(void *memory, const std::nothrow_t &) noexcept
{
    operator delete(memory);
}

void Tag::operator delete(void *memory, std::align_val_t alignment) noexcept
{
    ::operator delete(memory, alignment);
}

void Tag::DeleteChildren()
{
    m_LateChild = nullptr;
    TagDestruction::destroyForest(std::exchange(m_Child, nullptr));
}

// Null when there is none.
Tag *Tag::LastChild()
{
    if (!m_Child)
        m_LateChild = nullptr; // What a copy gave up is no longer its own.
    Tag *last = m_LateChild ? m_LateChild : m_Child;
    int steps = 0;
    for (; last && last->m_Next; last = last->m_Next)
        ++steps;
    if (steps >= LongWay)
        m_LateChild = last;
    return last;
}

void Tag::AddTag(Tag *tag, bool atFront)
{
    if (!tag)
        return;
    tag->m_Parent = this;
    Tag *const last = atFront && m_Child ? nullptr : LastChild();
    if (!last) {
        tag->m_Next = std::exchange(m_Child, tag);
        return;
    }
    tag->m_Next = nullptr;
    last->m_Next = tag;
}

void Tag::AddSiblingTag(Tag *tag)
{
    if (!tag)
        return;
    tag->m_Next = std::exchange(m_Next, tag);
    tag->m_Parent = m_Parent;
}

void Tag::ReplaceChildTag(Tag *oldTag, Tag *newTag)
{
    if (!oldTag || oldTag == newTag)
        return;
    Tag **link = &m_Child;
    while (*link && *link != oldTag)
        link = &(*link)->m_Next;
    if (!*link)
        return;
    *link = oldTag->m_Next;
    if (newTag) {
        newTag->m_Parent = this;
        newTag->m_Next = std::exchange(*link, newTag);
    }
    if (m_LateChild == oldTag)
        m_LateChild = nullptr;
    oldTag->m_Next = nullptr;
    oldTag->m_Parent = nullptr;
    delete oldTag;
}

void Tag::AdoptChildren(Tag *from, bool keepOwn)
{
    if (!keepOwn)
        DeleteChildren();
    if (!from || from == this)
        return;
    TreeBuilder builder(this);
    from->m_LateChild = nullptr;
    while (Tag *child = from->m_Child) {
        from->m_Child = std::exchange(child->m_Next, nullptr);
        child->m_Parent = nullptr;
        builder.append(child);
    }
}

void Tag::TagToText(QString &out, QChar terminator, bool, bool textOnly)
{
    TagWriter(out, terminator, textOnly).writeChildren(*this);
}

Tag *Tag::FindTag(const QString &name, const QString &attrName, const QString &attrValue)
{
    return TagMatch(name, attrName, attrValue) ? this : FindNextTag(this, name, attrName, attrValue);
}

Tag *Tag::FindChildTag(const QString &name, const QString &attrName, const QString &attrValue)
{
    Tag *found = nullptr;
    walkForest(m_Child, [&](Tag *node) {
        if (node->TagMatch(name, attrName, attrValue))
            found = node;
        else if (!isForeign(*node))
            return Walk::Enter;
        else if (node->m_Child)
            found = node->FindChildTag(name, attrName, attrValue);
        return found ? Walk::Stop : Walk::Pass;
    });
    return found;
}

bool Tag::TagMatch(const QString &, const QString &, const QString &)
{
    return false;
}

Tag *Tag::FindNthTag(const QString &name, int n, const QString &attrName, const QString &attrValue, bool reset)
{
    if (name.isEmpty())
        return nullptr;
    if (reset)
        FindNthTagCounter = 0;
    const auto isNth = [&](Tag *node) {
        if (!node->TagMatch(name, attrName, attrValue))
            return false;
        if (FindNthTagCounter == n)
            return true;
        ++FindNthTagCounter;
        return false;
    };
    Tag *found = isNth(this) ? this : nullptr;
    if (!found) {
        walkForest(m_Child, [&](Tag *node) {
            if (isForeign(*node))
                found = node->FindNthTag(name, n, attrName, attrValue, false);
            else if (!isNth(node))
                return Walk::Enter;
            else
                found = node;
            return found ? Walk::Stop : Walk::Pass;
        });
    }
    return found;
}

QString Tag::FindTagAttribute(const QString &name, const QString &attrName)
{
    Tag *tag = FindTag(name, QString(), QString());
    return tag ? tag->FindAttribute(attrName) : QString();
}

QString Tag::FindAttribute(const QString &)
{
    return QString();
}

void Tag::AddAttribute(const QString &, const QString &) {}

void Tag::DeleteAttribute(const QString &) {}

void Tag::ClearAttributes() {}

QString Tag::FindTagText(const QString &name, const QString &attrName, const QString &attrValue)
{
    Tag *tag = FindTag(name, attrName, attrValue);
    return tag ? tag->GetEnclosedTextItem() : QStringLiteral("");
}

bool Tag::Is_or_IsChildOf(const QString &name)
{
    return IsChildOf(name);
}

bool Tag::IsChildOf(const QString &name)
{
    for (Tag *ancestor = m_Parent; ancestor; ancestor = ancestor->m_Parent) {
        const TagKind kind = kindOf(*ancestor);
        if (kind == TagKind::Foreign)
            return ancestor->Is_or_IsChildOf(name);
        if (kind == TagKind::Named && static_cast<NamedTag *>(ancestor)->m_Name == name)
            return true;
    }
    return false;
}

bool Tag::TestSkip()
{
    return TestFlag(Skip);
}

void Tag::SetSkip(bool skip)
{
    SetFlag(Skip, skip);
}

void Tag::ClearAllSkip()
{
    visitAll(*this, clearSkip, 0, [](Tag &node) { node.ClearAllSkip(); });
}

bool Tag::TestInvisible()
{
    return TestFlag(Invisible);
}

void Tag::SetInvisible(bool invisible)
{
    SetFlag(Invisible, invisible);
}

QString Tag::GetEnclosedTextItem()
{
    return QStringLiteral("");
}

QString Tag::GetName()
{
    return QStringLiteral("");
}

Tag *Tag::Duplicate()
{
    std::unique_ptr<Tag> copy(Copy());
    if (!copy)
        return nullptr;
    TreeBuilder builder(copy.get());
    NodeArena arena;
    const auto duplicate = [&builder, &arena](Tag *node) {
        const bool foreign = isForeign(*node);
        Tag *child = foreign ? node->Duplicate() : copyOfOurs(*node, arena);
        if (child)
            builder.append(child);
        if (foreign)
            return Walk::Pass;
        builder.open(child);
        return Walk::Enter;
    };
    walkForest(m_Child, duplicate, [&builder](Tag *) { builder.close(); });
    return copy.release();
}

Tag *Tag::Copy()
{
    return withoutLinks(new Tag(*this));
}

void Tag::ChildSort(short (*compare)(Tag *, Tag *, void *), void *context)
{
    if (!compare)
        return;
    m_Child = sortSiblings(m_Child, compare, context);
}

void Tag::ForEachTag(void (*fn)(Tag *, long), long data)
{
    visitAll(*this, fn, data, [fn, data](Tag &node) { node.ForEachTag(fn, data); });
}

void Tag::ExtractTagFromParent(Tag *tag)
{
    if (!tag || !tag->m_Parent)
        return;
    Tag *parent = tag->m_Parent;
    for (Tag **link = &parent->m_Child; *link; link = &(*link)->m_Next) {
        if (*link == tag) {
            *link = tag->m_Next;
            break;
        }
    }
    if (parent->m_LateChild == tag)
        parent->m_LateChild = nullptr;
    tag->m_Parent = nullptr;
    tag->m_Next = nullptr;
}

Tag *Tag::FindNextTag(Tag *from, const QString &name, const QString &attrName, const QString &attrValue)
{
    Tag *node = from;
    while (node) {
        if (node->m_Child) {
            node = node->m_Child;
        } else {
            while (node && !node->m_Next)
                node = node->m_Parent;
            if (node)
                node = node->m_Next;
        }
        if (node && node->TagMatch(name, attrName, attrValue))
            return node;
    }
    return nullptr;
}

bool Tag::TestFlag(TagFlag_t flag)
{
    return (m_Flags >> flag) & 1U;
}

void Tag::SetFlag(TagFlag_t flag, bool on)
{
    const quint32 bit = 1U << flag;
    m_Flags = on ? m_Flags | bit : m_Flags & ~bit;
}

} // namespace XML
