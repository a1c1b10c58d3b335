#include "Session.h"

#include <quire/models/ServerModel.h>

#include "SessionWorker.h"

namespace Desk {

Session::Session(const Options &options, QObject *parent)
    : QObject(parent)
{
    m_thread.setObjectName(QStringLiteral("session"));
    m_thread.start();
    // The worker joins the automation library in its constructor, so it is made where it works.
    m_starter.moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        &m_starter,
        [this, options] {
            m_worker = new SessionWorker(options);
            connect(this, &Session::signOnWanted, m_worker, &SessionWorker::signOn);
            connect(m_worker, &SessionWorker::signedOn, this, &Session::takeSignOn);
            connect(m_worker, &SessionWorker::refused, this, &Session::refused);
            connect(
                m_worker, &SessionWorker::loggedOut, this,
                [this] {
                    m_signedOn = false;
                    Q_EMIT loggedOut();
                },
                Qt::QueuedConnection);
        },
        Qt::BlockingQueuedConnection);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
}

Session::~Session()
{
    end(5000);
}

void Session::signOn()
{
    Q_EMIT signOnWanted();
}

void Session::takeSignOn(const QString &user, const QString &place)
{
    m_server = m_worker->server();
    m_signedOn = true;
    Q_EMIT signedOn(user, place);
}

bool Session::end(int milliseconds)
{
    if (!m_thread.isRunning())
        return true;
    if (!Quire::ServerModel::waitForServer(milliseconds))
        return false;
    m_server = nullptr;
    m_thread.quit();
    return m_thread.wait(static_cast<unsigned long>(milliseconds));
}

} // namespace Desk
