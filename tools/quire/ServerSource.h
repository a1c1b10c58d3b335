#pragma once

#include <memory>

#include <QDateTime>
#include <QString>

#include <quire/newsroom/server/Server.h>
#include <quire/newsroom/store/Follower.h>
#include <quire/newsroom/store/Store.h>

#include "Options.h"

namespace Tool {

/// What a verb does with a newsroom folder. Any number of readers look at one at a time, a writer has it to itself.
enum class Access { Read, Write };

/// The server that a session speaks with: the built-in one with its sample newsroom, the built-in one with a newsroom
/// folder, or the server class that is registered on this machine. While it lives, the sign-on class leads to it. One
/// at a time, on a thread that has joined the automation library.
class ServerSource
{
public:
    /// Picks the server: the folder or the sample when \a options say so, else a registered class, else the sample.
    /// Raises Failure when the folder cannot be opened.
    ServerSource(const Options &options, Access access);
    ~ServerSource();
    ServerSource(const ServerSource &) = delete;
    ServerSource &operator=(const ServerSource &) = delete;

    /// For people: "built-in sample", "folder /home/nora/nr", "registered server".
    QString description() const;
    /// The newsroom folder; empty when there is none.
    QString folder() const;
    /// The newsroom itself, for what goes beyond the server's interfaces; null for a registered server.
    std::shared_ptr<Newsroom::Model> model() const;
    /// Whom to sign on when nobody was named: the newsroom's first user. Failure Usage for a registered server, whose
    /// users are nobody's business here.
    QString firstUser() const;
    QString firstPassword() const;

    /// Has the built-in server log a user out, as an administrator would; nothing happens with a registered server.
    void logOut(const QString &user);

    /// Looks after a queue of a newsroom folder that was opened for reading, where other processes may write; nothing
    /// happens with any other server.
    void follow(const QString &path);
    /// Brings those queues up to date with the folder; the server then tells of the changes.
    void catchUp();

    /// Writes what was changed to the newsroom folder, if that is what this is. Raises Failure.
    void keep();

private:
    std::shared_ptr<Newsroom::Model> openFolder(const QString &folder, Access access);
    Newsroom::User firstOfUsers() const;

    std::unique_ptr<Newsroom::Store> m_store; // for writing only
    std::unique_ptr<Newsroom::Server> m_server;
    Newsroom::Registration m_registration;
    QString m_folder;
    QDateTime m_readAt;                             // when the folder was about to be read
    std::unique_ptr<Newsroom::Follower> m_follower; // of the folder, from the first queue on
};

} // namespace Tool
