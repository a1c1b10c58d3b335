#pragma once

#include <QString>

namespace Tool {

/// Lets the user's editor work on the file \a path and waits for its end: the command in the environment variable
/// VISUAL, else in EDITOR, else the system's own. The command is what the system's shell takes, with arguments; the
/// file is added behind. Failure Failed when the editor cannot be started or fails.
void editFile(const QString &path);

} // namespace Tool
