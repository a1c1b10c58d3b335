#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>

#include <QString>

#include <quire/newsroom/server/ServerCore.h>

namespace Newsroom {

class Connections;
class SearchJob;

/// One sign-on of one user, from Connect to Disconnect: what the objects reached through it share.
///
/// Held by the sign-on object and by every object that was reached through it; ends at the latest with the sign-on
/// object. Any thread may call any operation.
class Session
{
public:
    Session(std::shared_ptr<ServerCore> core, std::shared_ptr<Connections> connections, SessionId id, QString user);
    ~Session();

    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    const std::shared_ptr<ServerCore> &core() const { return m_core; }
    Connections &connections() { return *m_connections; }

    /// The session as the newsroom knows it.
    SessionId id() const { return m_id; }

    /// The name that the user signed on with.
    const QString &user() const { return m_user; }

    bool isOpen() const { return m_open; }

    /// Signs the user off: stops the searches, releases the locks. Nothing when done already.
    void end();

    /// Tells the client that it was logged out, and ends.
    void logOut();

    // ---- watched queues

    void watch(LONG queueNumber, bool on);
    bool isWatching(LONG queueNumber) const;

    /// Sends the notice of a queue, at once or by the server's own thread.
    void tellQueueChange(LONG queueNumber);

    // ---- searches

    void add(const std::shared_ptr<SearchJob> &search);
    void forgetSearch(LONG id);

    /// False when no search of that number runs.
    bool stopSearch(LONG id);

private:
    const std::shared_ptr<ServerCore> m_core;
    const std::shared_ptr<Connections> m_connections;
    const SessionId m_id;
    const QString m_user;
    std::atomic<bool> m_open{true};

    mutable std::mutex m_mutex; // guards what follows; a leaf
    std::set<LONG> m_watched;
    std::map<LONG, std::shared_ptr<SearchJob>> m_searches;
};

} // namespace Newsroom
