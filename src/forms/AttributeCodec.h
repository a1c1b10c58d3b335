#pragma once

/// \file
/// Story fields as the server stores them and as people read and write them.
///
/// Field names are compared without regard to letter case. Which fields are converted, and how:
///
/// | Fields                                | Stored                            | Shown                             |
/// |---------------------------------------|-----------------------------------|-----------------------------------|
/// | modify-date, create-date, air-date    | server time                       | strftime's "%x %H:%M:%S"          |
/// | total-time, audio-time, runs-time,    | seconds                           | "M:SS", from an hour on "H:MM:SS" |
/// | mos-duration, tape-time               |                                   |                                   |
/// | back-time, cume-time, time of day     | "@" and seconds                   | "H:MM:SS"                         |
/// | back-time, cume-time, relative        | seconds                           | "+" and "H:MM:SS"                 |
///
/// Hours are not reduced to days. Numbers are decimal and 32 bits wide, with or without a sign and white space
/// around them; what does not fit is not a number. Quotients are rounded towards zero and each part keeps its sign:
/// -90 seconds are shown as "-1:-30", which is stored as -90 again.
///
/// Nothing is reported. Any thread, but no thread may change the process's locale or time zone meanwhile.

#include <QString>

#include <quire/platform/Export.h>

namespace Quire {

/// Replaces the stored \a value of the field \a name by what people read, and removes white space from both its ends,
/// that of fields which are not converted too.
///
/// Dates come out in this machine's local time, in the form and the local 8-bit text of the process's C locale. A date
/// or a duration that is not a number stays as it was; so does a date that the run-time cannot convert, or whose text
/// takes more than 31 bytes in the locale. A clock time that is empty stays empty; one that is not a number counts as
/// 0.
QUIRE_EXPORT void DecodeAttribute(const QString &name, QString &value);

/// Replaces the \a value of the field \a name, as people wrote it, by what the server stores.
///
/// - modify-date becomes the current server time and modify-by the name of the user that the process runs as, whatever
///   \a value was. When the system does not know the user, \a value stays.
/// - Durations and clock times are read as "H:M:S", "M:S" or "S". A second part that is not a number ends the reading
///   after the first, a third one after the second; whatever follows a third ":" is ignored. A first part that is no
///   number makes \a value an empty string. A total that does not fit into 32 bits is stored as its low 32 bits.
/// - A clock time that begins with "+" is relative, any other is a time of day. An empty one stays as it was.
/// - Every other field stays as it was, create-date and air-date too.
QUIRE_EXPORT void EncodeAttribute(const QString &name, QString &value);

/// Whether people may never edit the field \a name, because the server keeps it: create-by, create-date, item-channel,
/// line-count, modify-by, modify-date, modify-dev, mos-active, mos-subevent, mos-title, ready, status and total-time.
QUIRE_EXPORT bool IsAttributeReadOnly(const QString &name);

} // namespace Quire
