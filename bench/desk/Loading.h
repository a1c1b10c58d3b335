#pragma once

#include "DeskWindow.h"

/// How a queue comes onto the screen.
namespace Loading {

/// Prints when the first rows are painted, beside how long the library takes for one chunk alone; whether that is
/// within its bound.
bool firstRows(DeskWindow &desk);

/// Prints the heap that a story takes in the window, beside what it takes in the library's list; whether that is within
/// its bound.
bool heap(DeskWindow &desk);

} // namespace Loading
