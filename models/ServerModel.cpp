#include <quire/models/ServerModel.h>

#include <QTimerEvent>

#include <utility>

#include "ServerThread.h"
#include "ServerWork.h"
#include <quire/session/ErrorString.h>

namespace Quire {

ServerModel::ServerModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_work(std::make_unique<ServerWork>(this))
{}

ServerModel::~ServerModel() = default;

bool ServerModel::waitForServer(int milliseconds)
{
    return ServerThread::waitUntilIdle(milliseconds);
}

QHash<int, QByteArray> ServerModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert({
        {IdentifierRole, "identifier"},
        {NameRole, "name"},
        {PathRole, "path"},
        {TypeRole, "type"},
        {LockRole, "lock"},
        {UrgencyRole, "urgency"},
        {FlagsRole, "flags"},
        {CountRole, "count"},
        {IndexedRole, "indexed"},
        {ConfirmEditRole, "confirmEdit"},
        {InvertedRole, "inverted"},
        {SortedRole, "sorted"},
        {ReadOnlyRole, "readOnly"},
        {PendingRole, "pending"},
        {WidthRole, "width"},
        {StyleRole, "style"},
    });
    return names;
}

// ---- loading --------------------------------------------------------------------------------------------------------

bool ServerModel::isLoading() const
{
    return m_loads > 0;
}

qint32 ServerModel::error() const
{
    return m_error;
}

QString ServerModel::errorText() const
{
    return m_error == 0 ? QString() : getErrorString(m_error, false);
}

void ServerModel::setLoads(int loads)
{
    const bool was = isLoading();
    m_loads = loads;
    if (was != isLoading()) // cppcheck-suppress knownConditionTrueFalse; it goes by the loads
        Q_EMIT loadingChanged(!was);
}

void ServerModel::abandonWork()
{
    m_work = std::make_unique<ServerWork>(this);
    setLoads(0);
}

void ServerModel::beginLoad()
{
    const bool first = m_loads == 0;
    if (first) {
        m_error = 0;
        m_rows = 0;
    }
    setLoads(m_loads + 1);
    if (first)
        Q_EMIT loadingStarted();
}

void ServerModel::countRows(int rows)
{
    if (rows <= 0)
        return;
    m_rows += rows;
    Q_EMIT progress(m_rows);
}

void ServerModel::endLoad(qint32 error)
{
    if (error < 0 && m_error == 0)
        m_error = error;
    setLoads(m_loads - 1);
    if (m_loads > 0)
        return;
    if (m_error == 0)
        Q_EMIT finished();
    else
        Q_EMIT failed(errorText());
}

// ---- polling --------------------------------------------------------------------------------------------------------

int ServerModel::pollInterval() const
{
    return m_pollInterval;
}

void ServerModel::setPollInterval(int milliseconds)
{
    if (milliseconds <= 0)
        return;
    m_pollInterval = milliseconds;
    if (m_timer == 0)
        return;
    stopPolling();
    startPolling();
}

void ServerModel::startPolling()
{
    if (m_timer == 0)
        m_timer = startTimer(m_pollInterval);
}

void ServerModel::stopPolling()
{
    if (const int timer = std::exchange(m_timer, 0))
        killTimer(timer);
}

void ServerModel::pollSoon()
{
    const int soon = 5; // milliseconds
    if (m_soonTimer == 0)
        m_soonTimer = startTimer(qMin(soon, m_pollInterval));
}

void ServerModel::poll() {}

void ServerModel::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_soonTimer)
        killTimer(std::exchange(m_soonTimer, 0));
    else if (event->timerId() != m_timer)
        return QAbstractItemModel::timerEvent(event);
    poll();
}

} // namespace Quire
