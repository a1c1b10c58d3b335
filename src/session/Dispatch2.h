#pragma once

/// \file
/// From the server's untyped handles to its interfaces.
///
/// Shared by the three functions: the handle is asked for the interface. An empty handle, or one that does not support
/// the interface, gives an empty result; a query that fails for any other reason raises `_com_error`. The result is a
/// reference of its own. Being calls to the server's object, they belong under the server access lock.

#include <quire/orvex/Orvex.h>
#include <quire/platform/Export.h>

namespace Quire {

/// The handle as a directory.
QUIRE_EXPORT Orvex::IDirectory2Ptr Dispatch2Dir(const IDispatchPtr &handle);
/// The handle as a queue.
QUIRE_EXPORT Orvex::IQueue2Ptr Dispatch2Queue(const IDispatchPtr &handle);
/// The handle as a story.
QUIRE_EXPORT Orvex::IStory2Ptr Dispatch2Story(const IDispatchPtr &handle);

} // namespace Quire
