#pragma once

#include <memory>

#include <QString>

namespace Tool {

class CallTrace;

/// The options that stand before or behind every verb. A text that was not given is null.
struct Options
{
    QString newsroom;     ///< Folder to open as a newsroom with the built-in server.
    bool builtIn = false; ///< The built-in sample, even where a server is registered.
    QString user;
    QString password; ///< Never printed.
    QString server;
    bool json = false; ///< The machine form.
    QString traceFile;
    std::shared_ptr<CallTrace> trace; ///< Records the calls to the server; null without traceFile.
};

class Output;

/// What a verb gets to work with.
struct Host
{
    const Options &options;
    Output &output;
};

} // namespace Tool
