#pragma once

/// \file
/// Puts what a server hands out behind objects that record its calls. Free functions without state; any thread.

#include "trace/CallTrace.h"

namespace Tool {

/// A class object whose sign-on objects are recorded; made by \a factory, any server's.
IClassFactoryPtr tracedFactory(const IClassFactoryPtr &factory, const CallTracePtr &trace);

/// Replaces the directory, queue or story in \a object by one that is recorded; anything else stays, as does the object
/// when memory runs out. \a result is that of the call that gave it: when it failed nothing happens. Returns \a result.
HRESULT traced(HRESULT result, IDispatch **object, const CallTracePtr &trace) noexcept;

/// The same for the object, or the array of objects, in \a value.
HRESULT traced(HRESULT result, VARIANT *value, const CallTracePtr &trace) noexcept;

} // namespace Tool
