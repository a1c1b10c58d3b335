#pragma once

/// \file
/// Sorts a list of siblings.

#include <quire/markup/Tag.h>

namespace XML {

/// Sorts the list that begins with \a first by its sibling links and answers its new first node. \a compare is negative
/// when its first argument belongs before its second; equal nodes keep their order. Takes n log n comparisons.
Tag *sortSiblings(Tag *first, short (*compare)(Tag *, Tag *, void *), void *context);

} // namespace XML
