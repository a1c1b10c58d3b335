#pragma once

/// \file
/// Every call of the server failing, one at a time.

#include <functional>

#include <quire/testkit/Failure.h>
#include <quire/testkit/StandIn.h>

namespace Quire {
namespace TestKit {

/// Runs \a action again and again: in the n-th run the n-th call that the server gets goes wrong as \a fault says,
/// until a run makes fewer calls than that. Answers in how many runs a call went wrong.
///
///     const int calls = failEachCall(newsroom, Fault::hresult(E_FAIL), [&] {
///         Rundown rundown("RUNDOWN");       // the host's own: whatever fails, it must come through
///         QUIRE_EVENTUALLY(rundown.isIdle());
///     });
///
/// Each run begins where the one before ended, so the action undoes what it did, or makes its session anew. Failures
/// that are reported meanwhile say which call went wrong. A `_com_error` or any other exception that leaves the action
/// is a failure, too, and the next run follows; so is an action that makes more than 10,000 calls. Where reporting a
/// failure throws, that leaves this function. No fault stays behind either way.
int failEachCall(StandIn &newsroom, const Fault &fault, const std::function<void()> &action,
                 const Place &place = Place::here());

} // namespace TestKit
} // namespace Quire
