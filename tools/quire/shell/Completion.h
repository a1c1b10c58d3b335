#pragma once

#include <vector>

#include <QString>
#include <QStringList>

#include "shell/VerbText.h"

namespace Tool {

/// What can stand for the last word of a command line that is being typed.
struct Completion
{
    /// What else fits besides the words: the shell knows best which there are.
    enum class Files { None, Any, Directories };

    struct Word
    {
        QString text;
        QString description;
    };

    std::vector<Word> words;
    Files files = Files::None;
};

/// Completes the last of \a typed, the words behind the program's name; an empty last word is one that has not been
/// begun. Any other words may be wrong: what they mean is guessed as well as possible.
Completion complete(const VerbText &program, const QStringList &typed);

} // namespace Tool
