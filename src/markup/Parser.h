#pragma once

/// \file
/// Markup text to tree.

#include <quire/markup/Tag.h>

namespace XML {

/// Reads markup text into a tree: a forgiving scanner for story markup, not a validating XML parser.
///
/// Tags are what stands between "<" and the next ">", whatever it is; quotes do not hide a ">". Nothing is ever
/// reported: an unterminated token drops the rest of the text, an end tag that does not close the innermost open
/// element ends the parse, elements still open at the end are closed. Elements called "meta" or "zeko:meta" have no
/// children, what follows them are their siblings. Text loses its entities (DecodeString), attribute values do not, and
/// a text of a single line feed is dropped. Time and memory are linear in the text, whose length is bounded by QString
/// (a little under 2^30 characters).
///
/// Keeps no state between calls: one parser may serve any number of texts, and different threads at once.
class QUIRE_EXPORT Parser
{
public:
    Parser();
    /// One parser is like another.
    Parser(const Parser &) = default;
    /// One parser is like another.
    Parser &operator=(const Parser &) = default;
    virtual ~Parser();

    /// The tree of \a text under a bare root node, never null. The caller owns it.
    virtual Tag *Parse(const QString &text);

    /// Reads \a text from \a pos on and appends what it finds to the children of \a parent, until the end tag that
    /// closes \a parent or the end of what can be read. \a pos is moved behind that end tag, or to the length of the
    /// text. Does nothing when \a parent is null; a negative \a pos counts as 0.
    void ParseTag(Tag *parent, const QString &text, int &pos);

private:
    Tag::TagType_t GetTagString(const QString &text, int from, int *start, int *end);
};

} // namespace XML
