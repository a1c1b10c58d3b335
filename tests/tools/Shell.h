#pragma once

#include "Program.h"

/// What a foreign program left.
struct ShellOutcome
{
    bool found = false; ///< Whether the program is on this machine.
    int code = -1;
    QStringList lines; ///< Of its output, sorted.
    QString errors;
};

/// Runs a foreign program of this machine, a shell or a formatter, in which "quire" is the built program.
ShellOutcome runForeign(const QString &program, const QStringList &arguments, const QByteArray &input = QByteArray());
