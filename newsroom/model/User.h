#pragma once

/// \file
/// People who may sign on.

#include <QString>
#include <QtGlobal>

namespace Newsroom {

/// Somebody who may sign on. A plain value.
struct User
{
    QString name;           ///< Compared ignoring letter case; no blanks.
    QString password;       ///< Compared exactly.
    QString fullName;       ///< As people write it.
    QString mailQueue;      ///< Path of the user's mail queue; may be empty.
    QString device;         ///< Name of the terminal.
    qint32 number = 0;      ///< The user's number.
    qint32 rights = 0;      ///< Shown to clients; not interpreted.
    bool mayWrite = true;   ///< May create, change, lock and delete stories.
    bool superuser = false; ///< May write, also key-locked stories and locked queues.

    /// May write, or is a superuser.
    bool writes() const { return mayWrite || superuser; }
};

} // namespace Newsroom
