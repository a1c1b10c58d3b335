#pragma once

#include "LongQueue.h"

/// How rows come and change.
namespace Rows {

/// Prints how soon the first rows are there, and how long the event loop is held while all of them come; whether that
/// is within its bounds.
bool arrival();

/// Prints how long the event loop is held when all rows are read again and one has changed; whether that is within its
/// bound.
bool update(LongQueue &queue);

/// Prints the heap that a row takes beside the queue's list; whether that is within its bound.
bool heap(LongQueue &queue);

} // namespace Rows
