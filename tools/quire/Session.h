#pragma once

#include <QString>

#include <quire/session/QuireCOM.h>

#include "Apartment.h"
#include "Options.h"
#include "ServerObjects.h"
#include "ServerSource.h"

namespace Tool {

/// A session for the time of a verb: picks the server, signs on when made, signs off and unloads when destroyed. One at
/// a time, on the main thread. Whatever cannot be done raises Failure in words.
class Session
{
public:
    /// Picks the server and creates its sign-on object; does not sign on yet. A verb that changes a newsroom folder
    /// says so.
    explicit Session(const Options &options, Access access = Access::Read);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /// Signs on with the options' user, password and server, or as the newsroom's own first user. Failure
    /// SignOnRefused.
    void signOn();
    /// The server's answer to an attempt to sign on; changes who is signed on as QuireCOM::Connect does.
    HRESULT tryToSignOn(const QString &server, const QString &user, const QString &password);

    Quire::QuireCOM &com() { return *Quire::QuireCOM::TheQuireCOM; }
    ServerSource &source() { return m_source; }
    /// Who signOn() signs on as.
    QString user() const;

    /// The directory or queue at \a path; Failure NotFound.
    TreeEntry open(const QString &path);
    /// The queue at \a path; Failure NotFound also when it is a directory.
    TreeEntry openQueue(const QString &path);
    /// The story whose identifier starts with \a number, through the session's story cache; Failure NotFound.
    StoryEntry openStory(const TreeEntry &queue, qint32 number);
    /// The story at a position of the queue, counted from 1; it goes into the session's story cache. Failure NotFound.
    StoryEntry openStoryAt(const TreeEntry &queue, qint32 position);

    /// Keeps what was changed: a newsroom folder has it on disk afterwards. Failure Failed.
    void keep() { m_source.keep(); }

private:
    /// Destroys the library's session, whatever way this one ends.
    struct Unloader
    {
        Unloader() = default;
        Unloader(const Unloader &) = delete;
        Unloader &operator=(const Unloader &) = delete;
        ~Unloader() { Quire::QuireCOM::UnloadCOM(); }
    };

    const Options &m_options;
    Apartment m_apartment;
    ServerSource m_source;
    Unloader m_unloader;
};

} // namespace Tool
