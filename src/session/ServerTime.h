#pragma once

/// \file
/// Server times: seconds since 1970-01-01 00:00:00 in the local time zone of this machine, 32 bits, signed.

#include <ctime>

#include <quire/platform/Automation.h>
#include <quire/platform/Export.h>

/// The server time of the run-time's time \a t, seconds since 1970-01-01 00:00:00 UTC.
///
/// \a t is counted from this machine's local midnight of 1970-01-01, as the run-time computes it, and the low 32 bits
/// of the result are kept. \a t 0 stands for the current time, which is also moved by the run-time's time-zone
/// difference: in a zone without daylight saving in January 1970 "now" so comes out as plain seconds since 1970 UTC.
/// Any thread.
QUIRE_EXPORT long ConvertDate2Orvex(__int64 t);

/// Breaks the low 32 bits of \a value, taken as a run-time time, down into local time: all nine fields of \a out.
///
/// A null \a out does nothing. A time that the run-time cannot convert leaves \a out as it was. Any thread.
QUIRE_EXPORT void ConvertOrvex2Date(long value, struct tm *out);
