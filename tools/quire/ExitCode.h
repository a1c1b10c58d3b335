#pragma once

/// \file
/// What the command line answers to the shell: the one place that says so. The help, the manual and the tests read it.

namespace Tool {

/// The exit codes of `quire`. Scripts rely on them.
enum class ExitCode { Done = 0, Failed = 1, Usage = 2, SignOnRefused = 3, NotFound = 4 };

/// An exit code in words.
struct ExitCodeText
{
    ExitCode code;
    const char *brief;   ///< For the help.
    const char *meaning; ///< For the manual; docs/cli.md has it, too.
};

constexpr ExitCodeText exitCodeTexts[] = {
    {ExitCode::Done, "done", "everything that was asked for has been done"},
    {ExitCode::Failed, "failed or refused", "the server refused, or a file could not be read or written"},
    {ExitCode::Usage, "wrong usage", "the command line itself is wrong; nothing was done"},
    {ExitCode::SignOnRefused, "sign-on refused",
     "no session: wrong user or password, unknown server, no server at all"},
    {ExitCode::NotFound, "not found", "the path, story, field, form, blob or message that was named is not there"},
};

} // namespace Tool
