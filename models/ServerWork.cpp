#include "ServerWork.h"

#include <QMutex>
#include <QMutexLocker>

#include <deque>
#include <new>
#include <utility>

#include "ServerThread.h"

namespace Quire {

namespace {

// NOLINTNEXTLINE(performance-unnecessary-value-param): the event loop takes it over
void callLater([[maybe_unused]] QObject *object, [[maybe_unused]] std::function<void()> function)
{
#ifndef __clang_analyzer__ // does not see that the event loop owns the function
    QMetaObject::invokeMethod(object, std::move(function), Qt::QueuedConnection);
#endif
}

} // namespace

/// Where results arrive; shared with the jobs, which may outlive the model.
class ServerWork::Mailbox : public std::enable_shared_from_this<ServerWork::Mailbox>
{
public:
    explicit Mailbox(QObject *model)
        : m_model(model)
    {}

    void close()
    {
        std::deque<Delivery> dropped; // go without the mutex
        const QMutexLocker lock(&m_mutex);
        m_model = nullptr;
        m_deliveries.swap(dropped);
    }
    bool isClosed() const
    {
        const QMutexLocker lock(&m_mutex);
        return !m_model;
    }
    void post(Delivery delivery)
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_model)
            return;
        m_deliveries.push_back(std::move(delivery));
        deliverLater();
    }

    void hold()
    {
        const QMutexLocker lock(&m_mutex);
        ++m_holds;
    }
    void release() noexcept
    {
        const QMutexLocker lock(&m_mutex);
        if (--m_holds > 0 || m_deliveries.empty())
            return;
        try {
            deliverLater();
        } catch (...) { // there is no memory
            // The next result takes along what waits.
        }
    }
    bool isHeld() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_holds > 0;
    }

private:
    /// Under the mutex.
    void deliverLater()
    {
        const auto self = shared_from_this();
        callLater(m_model, [self] { self->deliver(); });
    }

    /// In the order in which they came, also after a Hold. A delivery may have the model turn to something else.
    void deliver()
    {
        while (const Delivery delivery = takeNext())
            delivery();
    }

    Delivery takeNext()
    {
        const QMutexLocker lock(&m_mutex);
        if (m_holds > 0 || m_deliveries.empty())
            return Delivery();
        Delivery delivery = std::move(m_deliveries.front());
        m_deliveries.pop_front();
        return delivery;
    }

    mutable QMutex m_mutex; // guards what follows; under it the event loop takes events and calls nobody
    QObject *m_model;
    std::deque<Delivery> m_deliveries;
    int m_holds = 0;
};

bool ServerWork::Turn::isOver() const
{
    return m_mailbox->isClosed();
}

void ServerWork::Turn::take(std::initializer_list<std::function<void()>> steps) const
{
    for (const auto &step : steps) {
        if (isOver())
            return;
        step();
    }
}

ServerWork::Hold::Hold(const ServerWork &work)
    : m_mailbox(work.m_mailbox)
{
    m_mailbox->hold();
}

ServerWork::Hold::~Hold()
{
    m_mailbox->release();
}

namespace {

ServerWork::Delivery resultOf(const std::function<ServerWork::Delivery()> &job,
                              const std::function<void(HRESULT)> &failed)
{
    ServerWork::Delivery delivery;
    const HRESULT error = failureOf([&] { delivery = job(); });
    return delivery ? delivery : [failed, error] { failed(error); };
}

} // namespace

HRESULT failureOf(const std::function<void()> &call)
try {
    call();
    return S_OK;
} catch (const _com_error &failure) {
    return FAILED(failure.Error()) ? failure.Error() : E_FAIL;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
} catch (...) {
    return E_FAIL;
}

ServerWork::ServerWork(QObject *model)
    : m_mailbox(std::make_shared<Mailbox>(model))
{}

ServerWork::~ServerWork()
{
    m_mailbox->close();
}

void ServerWork::run(std::function<Delivery()> job, std::function<void(HRESULT)> failed)
{
    post(std::move(job), std::move(failed), false);
}

void ServerWork::runAnyway(std::function<Delivery()> job, std::function<void(HRESULT)> failed)
{
    post(std::move(job), std::move(failed), true);
}

bool ServerWork::isHeld() const
{
    return m_mailbox->isHeld();
}

void ServerWork::post(std::function<Delivery()> job, std::function<void(HRESULT)> failed, bool anyway)
{
    const bool posted = ServerThread::post([mailbox = m_mailbox, job = std::move(job), failed, anyway] {
        if (anyway || (!mailbox->isClosed() && !ServerThread::isEnding()))
            mailbox->post(resultOf(job, failed)); // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it owns it
    });
    if (!posted)
        m_mailbox->post([failed = std::move(failed)] { failed(E_OUTOFMEMORY); });
}

} // namespace Quire
