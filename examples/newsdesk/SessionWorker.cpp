#include "SessionWorker.h"

#include <QMutex>
#include <QMutexLocker>

#include <quire/Quire.h>

namespace Desk {

namespace {

/// The library's callback for logouts is a plain function, called on any thread.
struct Listener
{
    QMutex mutex;
    SessionWorker *worker = nullptr;
};

Listener &listener()
{
    static Listener only;
    return only;
}

void setListener(SessionWorker *worker)
{
    const QMutexLocker lock(&listener().mutex);
    listener().worker = worker;
}

void tellLogout()
{
    const QMutexLocker lock(&listener().mutex);
    if (listener().worker)
        Q_EMIT listener().worker->loggedOut(); // received on other threads only
}

} // namespace

SessionWorker::SessionWorker(const Options &options)
    : m_options(options)
{
    setListener(this);
}

SessionWorker::~SessionWorker()
{
    setListener(nullptr);
    Quire::NotificationRelease();
    Quire::QuireCOM::UnloadCOM();
}

void SessionWorker::signOn()
{
    QString error;
    try {
        error = connectToServer();
    } catch (const _com_error &raised) {
        error = Quire::getErrorString(raised.Error(), true);
    }
    if (!error.isEmpty())
        Q_EMIT refused(error);
}

/// Tells what did not work; empty when the user is signed on.
QString SessionWorker::connectToServer()
{
    if (!m_server || !m_server->error().isEmpty())
        m_server = std::make_unique<NewsServer>(m_options);
    if (!m_server->error().isEmpty())
        return m_server->error();
    Quire::QuireCOM *const session = Quire::QuireCOM::GetQuireCOM(false);
    if (!session->IsLoaded())
        return Quire::getErrorString(session->GetCOMError(), true);
    const Newsroom::User first = m_server->firstUser();
    const QString user = m_options.user.isEmpty() ? first.name : m_options.user;
    const QString password = m_options.user.isEmpty() ? first.password : m_options.password;
    Quire::NotificationRelease();
    const long result = session->Connect(m_options.server, user, password, 0);
    if (static_cast<qint32>(result) < 0)
        return Quire::getErrorString(result, true);
    Quire::NotificationInit(nullptr, nullptr, tellLogout);
    Q_EMIT signedOn(user, m_server->name());
    return QString();
}

} // namespace Desk
