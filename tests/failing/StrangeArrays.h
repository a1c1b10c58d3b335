#pragma once

#include <quire/platform/Automation.h>

#include <vector>

namespace Failing {

/// An array that a server should not hand out, or that is at an edge of what it may, and what it counts as.
struct StrangeArray
{
    const char *name;
    SAFEARRAY *(*make)();
    int bytes;   ///< as a blob: its size
    int entries; ///< as a list: the items of a directory
    int stories; ///< as a list: the items of a queue, which passes over null objects
};

const std::vector<StrangeArray> &strangeArrays();

} // namespace Failing
