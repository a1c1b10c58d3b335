#pragma once

/// \file
/// The newsroom's time.

#include <functional>

#include <QtGlobal>

namespace Newsroom {

/// Gives the present as server time: seconds since 1970 as a signed 32-bit number. Called from any thread.
using Clock = std::function<qint32()>;

/// The machine's clock.
Clock systemClock();

/// A clock that always shows \a time, for tests.
Clock fixedClock(qint32 time);

} // namespace Newsroom
