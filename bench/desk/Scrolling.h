#pragma once

#include "DeskWindow.h"

/// How smoothly the queue's table scrolls.
namespace Scrolling {

/// Scrolls while all stories of the queue arrive, then through all of them, a page at a time and a row at a time;
/// prints how many frames a second were painted and how long the longest took. Whether that is within its bounds.
bool frames(DeskWindow &desk);

} // namespace Scrolling
