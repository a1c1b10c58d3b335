#pragma once

/// \file
/// The planned end of the memory for texts and arrays.

namespace Platform {
namespace Detail {

/// To be asked before each allocation for a text or an array. False when it is the one that Platform::failAllocation
/// has planned to fail.
bool mayAllocate() noexcept;

} // namespace Detail
} // namespace Platform
