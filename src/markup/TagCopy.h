#pragma once

/// \file
/// Copies of single nodes.

#include <quire/markup/Tag.h>

namespace XML {

class NodeArena;

/// Makes \a copy, which has taken over the links of its original, a node on its own. Answers \a copy.
Tag *withoutLinks(Tag *copy);

/// A copy of \a tag, which is exactly of one of our own classes, from \a arena and without links.
Tag *copyOfOurs(const Tag &tag, NodeArena &arena);

} // namespace XML
