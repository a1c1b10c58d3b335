#pragma once

/// \file
/// Whole files in and out. Failures raise Failure with the name and the system's reason.

#include <QByteArray>
#include <QString>

namespace Tool {

class Output;

/// The name of the standard input and output.
inline const QLatin1String standardStream("-");

/// All of the file \a name; "-" is the standard input. A file that does not come whole, as one of 2 GiB, is a failure.
QByteArray readFile(const QString &name);

/// The text of the file \a name, "-" as above: UTF-8, or what the byte-order mark at its beginning says, which is no
/// part of the text. What is no character of the encoding becomes U+FFFD.
QString readText(const QString &name);

/// Writes the file \a name; "-" is the standard output. The file appears whole or not at all: what was there stays when
/// writing fails. A device or pipe is written to as it stands, never replaced.
void writeFile(const QString &name, const QByteArray &bytes, Output &output);

} // namespace Tool
