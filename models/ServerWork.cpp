#include "ServerWork.h"

#include <QMutex>
#include <QMutexLocker>

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
        const QMutexLocker lock(&m_mutex);
        m_model = nullptr;
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
        const auto self = shared_from_this();
        callLater(m_model, [self, delivery = std::move(delivery)] {
            if (!self->isClosed()) // the model may have turned to something else meanwhile
                delivery();
        });
    }

private:
    mutable QMutex m_mutex;
    QObject *m_model; // guarded by m_mutex, under which the event loop takes events and calls nobody
};

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

void ServerWork::post(std::function<Delivery()> job, std::function<void(HRESULT)> failed, bool anyway)
{
    const bool posted = ServerThread::post([mailbox = m_mailbox, job = std::move(job), failed, anyway] {
        if (anyway || (!mailbox->isClosed() && !ServerThread::isEnding()))
            mailbox->post(resultOf(job, failed));
    });
    if (!posted)
        m_mailbox->post([failed = std::move(failed)] { failed(E_OUTOFMEMORY); });
}

} // namespace Quire
