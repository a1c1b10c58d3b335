#pragma once

/// \file
/// The bare node of a markup tree: links, flags, search and edit operations.

#include <cstddef>
#include <new>

#include <QChar>
#include <QString>

#include <quire/platform/Export.h>

namespace XML {

/// A node of a markup tree, and as it stands the nameless root of a parsed document.
///
/// **Ownership.** A node owns its children: destroying it destroys its whole subtree, but neither its siblings nor its
/// parent, and it does not unlink itself. Whoever destroys a node that is still in a tree calls ExtractTagFromParent
/// first. A node handed to AddTag, AddSiblingTag or ReplaceChildTag must not be in a tree already.
///
/// **Threads.** Plain data: one tree belongs to one thread at a time. Different trees may be used by different threads,
/// except that FindNthTag counts in one process-wide variable.
///
/// **Size.** Nodes may have any number of siblings, and trees be any number of levels deep: no operation recurses on
/// either. Nodes of a host's subclass are the exception: every walk but that of destruction calls the operation of the
/// node itself for its subtree, overridden or not, so walks nest on the stack as such nodes lie one in the other.
///
/// **Null strings.** As a search's \a attrName or \a attrValue a null string matches anything; an empty one that is not
/// null is compared like any other. No operation throws but for lack of memory.
class QUIRE_EXPORT Tag
{
public:
    /// Numbers of the bits in m_Flags.
    enum TagFlag_t {
        Skip = 0,     ///< The writer leaves out the node and its subtree.
        Invisible = 1 ///< The writer leaves out an element's own tags and writes its children.
    };

    /// Kinds of markup token. 1 is never used.
    enum TagType_t {
        None = 0,    ///< No token.
        Start = 2,   ///< A start tag.
        End = 3,     ///< An end tag.
        Empty = 4,   ///< A start tag with "/" before its ">".
        CData = 5,   ///< "<![CDATA[" to "]]>".
        Comment = 6, ///< "<!--" to "-->".
        XmlDecl = 7, ///< "<?xml" to "?>".
        DocType = 8  ///< "<!DOCTYPE" to ">".
    };

    /// A node without links and with all flags clear.
    Tag();
    /// Copies the members as they stand, links included: the copy names the same children and must give them up
    /// (m_Child to null) before it is destroyed. Copy and Duplicate are what a host usually wants.
    Tag(const Tag &other);
    /// Like the copy constructor; the former children are neither destroyed nor unlinked. Detach a child before
    /// something is assigned to it: its parent does not learn that its list goes on elsewhere.
    Tag &operator=(const Tag &other);

    /// Destroys the children, each with its subtree, from first to last.
    virtual ~Tag();

    /// Destroys the children, each with its subtree, from first to last.
    virtual void DeleteChildren();

    /// Makes \a tag the first child, or with \a atFront false the last one. The node takes ownership; null is ignored.
    virtual void AddTag(Tag *tag, bool atFront);

    /// Puts \a tag directly after this node, under the same parent. Null is ignored.
    virtual void AddSiblingTag(Tag *tag);

    /// Puts \a newTag in the place of \a oldTag and destroys that with its subtree; with a null \a newTag only removes
    /// it. Does nothing when \a oldTag is null or no child of this node.
    virtual void ReplaceChildTag(Tag *oldTag, Tag *newTag);

    /// Moves every child of \a from, in order, to the end of this node's children, which are destroyed first unless
    /// \a keepOwn is true. A null \a from moves nothing. \a from must not lie below this node unless \a keepOwn.
    virtual void AdoptChildren(Tag *from, bool keepOwn);

    /// Appends the text of the node to \a out, which is no text of this tree's own; a bare node is just its children.
    ///
    /// \a terminator is appended after each closed element and each comment-like node unless it is the null character.
    /// \a contentOnly leaves out the element's own tags, not those of its children; \a textOnly leaves out all markup.
    /// Nothing is reported; a piece for which \a out would become longer than a QString can be is left out, as is all
    /// that follows it.
    virtual void TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly);

    /// This node if it matches, otherwise as FindNextTag from this node: the search does not end with the subtree.
    virtual Tag *FindTag(const QString &name, const QString &attrName, const QString &attrValue);

    /// The first match among the descendants, in document order, or null. This node itself is not tested.
    virtual Tag *FindChildTag(const QString &name, const QString &attrName, const QString &attrValue);

    /// Whether the node is an element called \a name whose attribute \a attrName has the value \a attrValue.
    ///
    /// False for all but elements. The attribute is not looked at when either of its strings is null; when it is, it is
    /// looked up as by FindAttribute, which adds a missing one.
    virtual bool TagMatch(const QString &name, const QString &attrName, const QString &attrValue);

    /// The match number \a n, counted from 0 in document order over this node and its descendants, or null.
    ///
    /// Matches are counted in FindNthTagCounter, which \a reset sets to 0 first; without it counting goes on from the
    /// previous search. Null at once, without touching the counter, when \a name is empty.
    virtual Tag *FindNthTag(const QString &name, int n, const QString &attrName, const QString &attrValue, bool reset);

    /// The value of \a attrName on the first element that FindTag finds by \a name alone; null when there is none.
    virtual QString FindTagAttribute(const QString &name, const QString &attrName);

    /// The value of an attribute. A bare node has none and answers a null string. See NamedTag::FindAttribute.
    virtual QString FindAttribute(const QString &attrName);

    /// Sets an attribute. Does nothing but for elements.
    virtual void AddAttribute(const QString &attrName, const QString &value);

    /// Removes an attribute if there is one. Does nothing but for elements.
    virtual void DeleteAttribute(const QString &attrName);

    /// Removes all attributes. Does nothing but for elements.
    virtual void ClearAttributes();

    /// GetEnclosedTextItem of what FindTag finds; an empty string, not null, when it finds nothing.
    virtual QString FindTagText(const QString &name, const QString &attrName, const QString &attrValue);

    /// Whether this node or any ancestor is an element called \a name.
    virtual bool Is_or_IsChildOf(const QString &name);

    /// Whether any ancestor is an element called \a name.
    virtual bool IsChildOf(const QString &name);

    /// Whether the flag Skip is set.
    virtual bool TestSkip();

    /// Sets or clears the flag Skip of this node.
    virtual void SetSkip(bool skip);

    /// Clears the flag Skip of this node, its descendants, its following siblings and theirs. For overrides see
    /// ForEachTag.
    virtual void ClearAllSkip();

    /// Whether the flag Invisible is set.
    virtual bool TestInvisible();

    /// Sets or clears the flag Invisible of this node.
    virtual void SetInvisible(bool invisible);

    /// The text right inside an element; an empty string for all other nodes. See NamedTag::GetEnclosedTextItem.
    virtual QString GetEnclosedTextItem();

    /// The name of an element; an empty string for all other nodes.
    virtual QString GetName();

    /// A deep copy of this node and its subtree, without siblings or parent. The caller owns it.
    virtual Tag *Duplicate();

    /// A node of the same class with the same flags and data and no links. The caller owns it.
    virtual Tag *Copy();

    /// Sorts the children in place. \a compare is negative when its first argument belongs before its second; equal
    /// children keep their order. \a context is handed through. Does nothing when \a compare is null.
    virtual void ChildSort(short (*compare)(Tag *, Tag *, void *), void *context);

    /// Calls \a fn with \a data for this node, its descendants, its following siblings and theirs, in document order.
    ///
    /// An override that a walk has called comes back from this operation, called with the same arguments, before the
    /// following siblings are visited; they are not when it does not call it. Neither \a fn nor an override takes out
    /// or destroys the node that it is called for.
    virtual void ForEachTag(void (*fn)(Tag *, long), long data);

    /// Unlinks \a tag from its parent, which no longer owns it, and clears its parent and next-sibling links. Does
    /// nothing for null or a node without parent.
    static void ExtractTagFromParent(Tag *tag);

    /// The first match after \a from in document order, or null: descendants, then following siblings, then those of
    /// the ancestors, to the end of the tree. Null for a null \a from.
    static Tag *FindNextTag(Tag *from, const QString &name, const QString &attrName, const QString &attrValue);

    /// \cond
    // Nodes that the library makes together lie together; these let delete find out about each.
    static void *operator new(std::size_t size);
    static void *operator new(std::size_t size, const std::nothrow_t &) noexcept;
    static void *operator new(std::size_t size, std::align_val_t alignment);
    static void *operator new(std::size_t, void *place) noexcept { return place; }
    static void operator delete(void *memory) noexcept;
    static void operator delete(void *memory, const std::nothrow_t &) noexcept;
    static void operator delete(void *memory, std::align_val_t alignment) noexcept;
    static void operator delete(void *, void *) noexcept {}
    /// \endcond

    /// How many matches FindNthTag has counted since it was last told to reset.
    static int FindNthTagCounter;

    // The links are there to be read. The operations above keep them right, and know more of a list than these say.
    Tag *m_Child = nullptr;  ///< The first child.
    Tag *m_Next = nullptr;   ///< The next sibling under the same parent.
    Tag *m_Parent = nullptr; ///< The parent; null for a root or a detached node.

private:
    virtual bool TestFlag(TagFlag_t flag);
    virtual void SetFlag(TagFlag_t flag, bool on);

    friend class TreeBuilder; // appends many children at once

    Tag *LastChild();

    // A late child of a long list, from where the way to its end is short; null for all other lists.
    Tag *m_LateChild = nullptr;

public:
    quint32 m_Flags = 0; ///< Bits numbered by TagFlag_t; all others stay 0.
};

} // namespace XML
