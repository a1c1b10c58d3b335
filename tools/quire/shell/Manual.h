#pragma once

/// \file
/// The manual: a man page for the command line, and one for each verb with its family. Free functions without state.

#include <QString>

#include "shell/VerbText.h"

namespace Tool {

/// "quire-blob".
QString manualName(const VerbText &program, const VerbText &verb);

/// The page of the whole command line.
QString manualPage(const VerbText &program);

/// The page of \a verb, which is one of \a program's.
QString manualPage(const VerbText &program, const VerbText &verb);

} // namespace Tool
