#pragma once

#include <functional>
#include <string>

#include <QString>
#include <QStringList>

#include <CLI/CLI.hpp>

#include "Options.h"

namespace Tool {

/// What the arguments ask for; empty until a verb is recognised.
using Action = std::function<void(Host &)>;

/// One verb of the command line, or a family of verbs (`blob put`, `blob get`). It declares its arguments, keeps what
/// was given for them, and does the work. Owned by CommandLine, used by the main thread only.
class Command
{
public:
    Command() = default;
    Command(const Command &) = delete;
    Command &operator=(const Command &) = delete;
    virtual ~Command() = default;

    /// Adds the verb with its arguments and examples to \a app. When the arguments name it, it sets \a chosen. Both
    /// outlive the command.
    virtual void declare(CLI::App &app, Action &chosen) = 0;

protected:
    /// A verb that sets \a chosen to \a action. \a examples are lines without the prompt.
    static CLI::App *addVerb(CLI::App &app, const char *name, const char *description, const char *examples,
                             Action &chosen, Action action);
};

/// \a argument as the parser has to have it: it would take one in square brackets for a list.
std::string protectedArgument(const QString &argument);
/// The argument behind what the parser has \a given, without what protected it.
QString plainArgument(std::string given);

/// Adds an option or argument that takes a text; \a target stays null until it is given.
CLI::Option *addText(CLI::App &app, const char *name, QString &target, const char *description);

/// The same for the name of a file or folder. An empty one, such as an unset variable of a shell gives, is refused.
CLI::Option *addFileName(CLI::App &app, const char *name, QString &target, const char *description);

/// Adds an option or argument that takes any number of texts.
CLI::Option *addTexts(CLI::App &app, const char *name, QStringList &target, const char *description);

/// Adds an option that takes a whole number from \a least on. Anything else is refused.
CLI::Option *addNumber(CLI::App &app, const char *name, int &target, int least, const char *description);

/// Adds an option that takes a time above zero, in seconds. Anything else is refused.
CLI::Option *addSeconds(CLI::App &app, const char *name, double &target, const char *description);

/// Adds an option or argument that takes one of \a choices, which the help and the completion show; what else is given
/// is not refused here.
CLI::Option *addChoice(CLI::App &app, const char *name, QString &target, const QStringList &choices);

} // namespace Tool
