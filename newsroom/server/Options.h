#pragma once

#include <atomic>

#include <quire/platform/Automation.h>

namespace Newsroom {

/// How a server behaves where servers differ. May be changed at any time, from any thread; holds for later calls.
struct Options
{
    /// Queue changes and logouts are told on the thread that caused them, inside the operation, instead of on the
    /// server's own thread. Search hits always come on the server's own thread.
    std::atomic<bool> deliverAtOnce{false};

    /// put_Update(TRUE) is answered by a notice of that queue.
    std::atomic<bool> noticeOnUpdate{false};

    /// An empty text is handed out as a null BSTR.
    std::atomic<bool> nullForEmpty{false};

    /// The most hits that one search event carries; at least 1.
    std::atomic<int> searchBatch{20};

    /// What the arrays of GetList hold: VT_DISPATCH, VT_UNKNOWN or VT_VARIANT.
    std::atomic<VARTYPE> listElements{VT_DISPATCH};
};

} // namespace Newsroom
