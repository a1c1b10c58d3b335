#pragma once

/// \file
/// What the command line answers to the shell.

namespace Tool {

/// The exit codes of `quire`. Scripts rely on them; docs/cli.md lists them.
enum class ExitCode {
    Done = 0,          ///< Everything that was asked for has been done.
    Failed = 1,        ///< The server refused, or a file could not be read or written.
    Usage = 2,         ///< The command line itself is wrong; nothing was done.
    SignOnRefused = 3, ///< No session: wrong user or password, unknown server, no server at all.
    NotFound = 4       ///< The path, story, field, form, blob or message that was named is not there.
};

} // namespace Tool
