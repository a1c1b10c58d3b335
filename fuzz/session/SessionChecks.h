#pragma once

/// \file
/// What has to hold for every text that a host gives to a session, and for what a server answers. Each check answers
/// what is wrong, an empty string when nothing is.

#include <QByteArray>
#include <QString>

namespace SessionFuzz {

/// Identifiers of stories: the first line is read by the library, in several bases, and by the stand-in. Both read what
/// they write, and the library reads what splitting and converting piece by piece gives.
QString checkIdentifiers(const QString &text);

/// Names on a session with the stand-in: the lines are a path, the name of a form, the name of a blob, a search, and
/// the bytes of the blob. A handle is found exactly for the paths that there are, a blob comes back, and nothing of the
/// server is held afterwards.
QString checkNames(const QString &text);

/// Signing on: the lines are server, user and password. Only those that the stand-in knows are let in, and a session
/// tells what it was let in with.
QString checkSignOn(const QString &text);

/// A blob as any array: the bytes of one row of bytes, nothing of any other.
QString checkBlobs(const QByteArray &input);

} // namespace SessionFuzz
