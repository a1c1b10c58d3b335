#pragma once

#include <quire/newsroom/server/Owned.h>
#include <quire/platform/Variant.h>

#include <vector>

namespace Newsroom {

/// Objects and lists of objects as the server's operations answer them.
namespace ObjectList {

/// Puts an object into an empty VARIANT.
void setObject(VARIANT *value, Owned<IDispatch> object);

/// A VARIANT that holds a one-dimensional array, lower bound 0, of these objects; null objects stay null.
/// `elements` is VT_DISPATCH, VT_UNKNOWN or VT_VARIANT (each element then a VARIANT of VT_DISPATCH).
/// Throws std::bad_alloc.
Platform::Variant make(const std::vector<Owned<IDispatch>> &objects, VARTYPE elements);

} // namespace ObjectList
} // namespace Newsroom
