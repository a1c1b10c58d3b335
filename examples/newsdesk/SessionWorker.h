#pragma once

#include <QObject>

#include <memory>
#include <optional>

#include <quire/platform/Apartment.h>

#include "NewsServer.h"

namespace Desk {

/// What a Session does on its thread: makes the server and the library's session, signs on and off. Made, used and
/// destroyed there; only the signals go elsewhere.
class SessionWorker : public QObject
{
    Q_OBJECT

public:
    explicit SessionWorker(const Options &options);
    ~SessionWorker() override;

    /// Signs on, also anew.
    void signOn();

    /// The built-in server, null when it is another or none.
    Newsroom::Server *server() const { return m_server ? m_server->server() : nullptr; }

Q_SIGNALS:
    void signedOn(const QString &user, const QString &place);
    void refused(const QString &text);
    /// The server has ended the session. From any thread.
    void loggedOut();

private:
    Q_DISABLE_COPY(SessionWorker)

    QString connectToServer();

    const Platform::Apartment m_apartment;
    const Options m_options;
    std::unique_ptr<NewsServer> m_server;
};

} // namespace Desk
