#pragma once

/// \file
/// Waiting for what other threads and the event loop bring about.

#include <functional>

#include <quire/testkit/Failure.h>

namespace Quire {
namespace TestKit {

/// Longer than anything takes that does not hang, in milliseconds.
constexpr int patience = 20000;

/// Waits until \a condition holds, asking for it about every millisecond on the calling thread, and processes that
/// thread's events meanwhile, deferred deletions included. False when it still does not hold after that many
/// milliseconds; with 0 it is asked for once.
bool waitUntil(const std::function<bool()> &condition, int milliseconds = patience);

/// As waitUntil, and reports a failure when the condition, written as \a text, does not come true.
bool eventually(const Place &place, const char *text, const std::function<bool()> &condition,
                int milliseconds = patience);

} // namespace TestKit
} // namespace Quire

/// Checks that a condition comes true, waiting as long as patience lasts; true when it did. Events are processed
/// meanwhile.
#define QUIRE_EVENTUALLY(...)                                                                                          \
    Quire::TestKit::eventually({__FILE__, __LINE__}, #__VA_ARGS__, [&] { return static_cast<bool>(__VA_ARGS__); })
