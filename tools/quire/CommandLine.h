#pragma once

#include <memory>
#include <vector>

#include <QStringList>

#include <CLI/CLI.hpp>

#include "Command.h"
#include "ExitCode.h"
#include "Options.h"
#include "Output.h"
#include "shell/VerbText.h"

namespace Tool {

/// The whole command line: its options and verbs, and the one place where failures become a line and an exit code. One
/// per program, used by the main thread only.
class CommandLine
{
public:
    CommandLine();
    ~CommandLine();
    CommandLine(const CommandLine &) = delete;
    CommandLine &operator=(const CommandLine &) = delete;

    /// Does what \a arguments (without the program's name) ask for, and answers the exit code. Raises nothing.
    ExitCode run(const QStringList &arguments) noexcept;

    /// All verbs and options in words.
    VerbText describe() const;

private:
    template<class Verb>
    void add();
    void declareOptions();
    void parse(const QStringList &arguments);
    void readEnvironment();
    ExitCode perform(const QStringList &arguments);
    [[noreturn]] void failUsage(const CLI::ParseError &error) const;

    Options m_options;
    Output m_output;
    Action m_chosen;
    std::vector<std::unique_ptr<Command>> m_commands;
    CLI::App m_app;
};

} // namespace Tool
