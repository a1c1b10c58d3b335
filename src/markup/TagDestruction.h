#pragma once

/// \file
/// Destroys subtrees of any depth.

#include <quire/markup/Tag.h>

namespace XML {

/// Destroys nodes with their subtrees without recursion on their depth.
///
/// Nodes of our own classes are destroyed children first, so that their destructors find none left. A node of a host's
/// class keeps its children while the host's destructor runs; when that reaches ~Tag the children are handed back to
/// the walk that destroys the node, instead of being destroyed further down the stack.
namespace TagDestruction {

/// Destroys \a first, its following siblings and all their subtrees. Null does nothing.
void destroyForest(Tag *first);

/// For the destructor of \a tag: destroys its children, or hands them to the walk that is destroying \a tag.
void destroyChildren(Tag &tag);

} // namespace TagDestruction

} // namespace XML
