#pragma once

/// \file
/// What the tests of the verbs that open an editor have in common.

#include "Program.h"

/// The command for EDITOR that runs the tests' own editor, see FakeEditor.cpp.
QString editorCommand(const QString &arguments);

/// What the file holds that the failure \a run names as the one that keeps the edit, without what only Windows puts
/// there. The file and its folder are removed.
QByteArray takeKept(const Outcome &run);
