#include <quire/models/ServerModel.h>

#include <QCoreApplication>
#include <QTimerEvent>

#include <utility>

#include "RowSteps.h"
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
    return m_error == 0 ? QString() : wordsFor(m_error);
}

QString ServerModel::wordsFor(qint32 error)
{
    QString text = getErrorString(error, false);
    if (!text.isEmpty())
        return text;
    // What getErrorString says where the system has no text.
    return QCoreApplication::translate("QObject", "Unexpected error, code = x%1.", "error message")
        .arg(QString::number(static_cast<quint32>(error), 16));
}

bool ServerModel::turnAway(const std::function<void()> &clear)
{
    beginResetModel();
    stopPolling();
    m_work = std::make_unique<ServerWork>(this); // before views hear of it: they ask for the new rows at once
    m_loads = 0;
    m_error = 0;
    m_ended.reset();
    clear();
    const ServerWork::Turn turn(*m_work);
    endResetModel();
    if (!turn.isOver())
        tellState();
    return !turn.isOver();
}

/// Tells what is not as it was told last: slots may have changed it meanwhile.
void ServerModel::tellState()
{
    const ServerWork::Turn turn(*m_work);
    if (std::exchange(m_toldLoading, isLoading()) != isLoading())
        Q_EMIT loadingChanged(m_toldLoading);
    if (!turn.isOver() && std::exchange(m_toldError, m_error) != m_error)
        Q_EMIT errorTextChanged(errorText());
}

bool ServerModel::beginLoad()
{
    const ServerWork::Turn turn(*m_work);
    tellEnd();
    if (turn.isOver())
        return false;
    if (m_loads++ > 0)
        return true;
    m_error = 0;
    m_rows = 0;
    tellState();
    if (!turn.isOver())
        Q_EMIT loadingStarted();
    return !turn.isOver();
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
    const ServerWork::Turn turn(*m_work);
    if (error < 0 && m_error == 0)
        m_error = error;
    if (--m_loads == 0)
        m_ended = m_error;
    tellState();
    if (!turn.isOver())
        tellEnd();
}

/// Once for each load, also when one that a slot has begun asks for it first.
void ServerModel::tellEnd()
{
    const std::optional<qint32> ended = std::exchange(m_ended, std::nullopt);
    if (!ended)
        return;
    if (*ended == 0)
        Q_EMIT finished();
    else
        Q_EMIT failed(wordsFor(*ended));
}

// ---- rows -----------------------------------------------------------------------------------------------------------

bool ServerModel::changeRows(const QModelIndex &parent, const RowStep &step, const std::function<void()> &change)
{
    const ServerWork::Turn turn(*m_work);
    const int last = step.first + step.count - 1;
    if (step.kind == RowStep::Remove)
        beginRemoveRows(parent, step.first, last);
    else if (step.kind == RowStep::Insert)
        beginInsertRows(parent, step.first, last);
    else
        beginMoveRows(parent, step.first, last, parent, step.to);
    if (turn.isOver())
        return false; // a reset has ended it
    change();
    if (step.kind == RowStep::Remove)
        endRemoveRows();
    else if (step.kind == RowStep::Insert)
        endInsertRows();
    else
        endMoveRows();
    return !turn.isOver();
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
