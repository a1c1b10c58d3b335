#pragma once

/// \file
/// The environment variables that the command line reads.

namespace Tool {

/// An environment variable in words, for the manual; docs/cli.md has it, too.
struct EnvironmentText
{
    const char *name;
    const char *meaning;
};

constexpr EnvironmentText environmentTexts[] = {
    {"QUIRE_PASSWORD", "the password, unless --password is given"},
    {"COLUMNS", "how wide a drawing may be, at least 20; else the terminal's width, into a file or pipe no limit"},
    {"NO_COLOR", "when it is not empty, nothing is in colour; otherwise colours are used on terminals only"},
    {"TERM", "with \"dumb\" nothing is in colour either"},
    {"VISUAL, EDITOR", "the editor that quire edit starts, with its arguments; the first that is set"},
    {"QUIRE_DEBUG", "when set, what the library notes for its developers goes to the standard error output"},
};

} // namespace Tool
