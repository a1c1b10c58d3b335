#pragma once

/// \file
/// The thread that loads a queue. Not part of the public surface.

#include <QMutex>
#include <QThread>

#include <memory>

#include <quire/orvex/Orvex.h>

namespace Quire {

class QueueLoad;

/// Runs one load of a queue, with a reference of its own to the server's queue, which it gives up at its end.
///
/// Made, begun and collected on any thread. Never destroyed while it runs: retire() takes care of one that hangs. From
/// the first one that begins the library stays in memory until the process ends; the end of the process cancels those
/// that still run, and waits a moment for them.
class QueueListThread : public QThread
{
public:
    /// Is going to read \a server from \a position on, and to pause while somebody holds \a gate.
    QueueListThread(std::shared_ptr<QueueLoad> load, Orvex::IQueuePtr server, int position,
                    std::shared_ptr<QMutex> gate);
    ~QueueListThread() override;

    /// Starts to read. False when the system gives no thread: nothing is going to be read, nor the load to be ended.
    bool begin();

    const std::shared_ptr<QueueLoad> &load() const { return m_load; }

    /// Destroys \a worker, null allowed, some time after it has ended. The number of those that were still running.
    static int retire(std::unique_ptr<QueueListThread> worker);

protected:
    void run() override;

private:
    Q_DISABLE_COPY(QueueListThread)
    class Workers;

    bool readChunks();

    const std::shared_ptr<QueueLoad> m_load;
    const std::shared_ptr<QMutex> m_gate;
    Orvex::IQueuePtr m_server;
    int m_position;
};

} // namespace Quire
