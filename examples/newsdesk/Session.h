#pragma once

#include <QObject>
#include <QThread>

#include "Options.h"

namespace Newsroom {
class Server;
}

namespace Desk {

class SessionWorker;

/// The session with the news server, as the window sees it. Signing on may take as long as a network does and happens
/// on a thread of the session's own; what becomes of it comes back as signals on the thread of this object. One at a
/// time; it outlives the models.
class Session : public QObject
{
    Q_OBJECT

public:
    explicit Session(const Options &options, QObject *parent = nullptr);
    /// Signs off, see end.
    ~Session() override;

    /// Asks to sign on, also anew after a logout.
    void signOn();
    /// Signs off and ends the thread; the models must be gone. False when the server still hangs in something after
    /// that time: then better end the process at once.
    bool end(int milliseconds);

    bool isSignedOn() const { return m_signedOn; }
    /// The built-in server, for tests and demonstrations; null for a registered one and before signedOn. It lives until
    /// the session ends.
    Newsroom::Server *server() const { return m_server; }

Q_SIGNALS:
    void signedOn(const QString &user, const QString &place);
    /// Signing on did not work; \a text says why.
    void refused(const QString &text);
    /// The server has ended the session.
    void loggedOut();
    /// To the session's thread.
    void signOnWanted();

private:
    Q_DISABLE_COPY(Session)

    void takeSignOn(const QString &user, const QString &place);

    QObject m_starter; // of the thread: has it begin
    QThread m_thread;
    SessionWorker *m_worker = nullptr; // of the thread
    Newsroom::Server *m_server = nullptr;
    bool m_signedOn = false;
};

} // namespace Desk
