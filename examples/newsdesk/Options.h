#pragma once

#include <QString>
#include <QStringList>

namespace Desk {

/// What the program is started with. A plain value.
struct Options
{
    QString newsroom;     ///< A newsroom folder to open; empty: none.
    bool builtIn = false; ///< The built-in sample newsroom, even where a server is registered.
    int stories = 0;      ///< More than 0: a newsroom made up by rule, with so many stories in one queue.
    QString server;       ///< Which news server a registered server is to sign on to.
    QString user;         ///< Empty: the newsroom's own first user.
    QString password;     ///< From --password or QUIRE_PASSWORD; never shown.
    bool dark = false;    ///< Begin in dark colours.
    QString open;         ///< The path of the queue to begin with; empty: none.
    QString screenshots;  ///< Take pictures into this folder and end; empty: do not.
};

/// Reads the command line; ends the program for --help, --version and what is wrong, as QCommandLineParser does.
Options readOptions(const QStringList &arguments);

} // namespace Desk
