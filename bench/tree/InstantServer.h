#pragma once

#include <QString>

#include <quire/orvex/Orvex.h>

/// A server that has nothing to think about: its texts are ready, and each call copies them out. What remains of a load
/// is what the caller does.
namespace InstantServer {

/// Every call takes that much longer, spent waiting; 0 at first.
void setDelay(int microseconds);

/// A queue of \a stories stories with a header and 25 fields each, about 2 KB of markup.
IDispatchPtr makeQueue(int stories);

/// A directory of \a entries entries, sub-directories and queues in turn.
IDispatchPtr makeDirectory(int entries);

} // namespace InstantServer
