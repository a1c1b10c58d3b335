#include "QueueLoading.h"

#include <algorithm>
#include <limits>

#include <QThread>

#include "Failure.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr unsigned long loadPollMilliseconds = 2;

/// A bar with what it says in words behind it.
QString progressText(int loaded, int whole)
{
    constexpr int cells = 30;
    QString count = counted(loaded, QStringLiteral("story"), QStringLiteral("stories"));
    if (whole <= 0)
        return count;
    const int done = static_cast<int>(qint64{cells} * std::min(loaded, whole) / whole);
    return QStringLiteral("[%1%2] %3 of %4")
        .arg(QString(done, QLatin1Char('#')), QString(cells - done, QLatin1Char('.')), QString::number(loaded))
        .arg(whole);
}

} // namespace

void waitForLoad(Quire::Queue &queue, int whole, Output &output)
{
    while (!queue.IsComplete()) {
        if (queue.HasChanged(true))
            output.progress(progressText(queue.Size(), whole));
        QThread::msleep(loadPollMilliseconds);
    }
    output.progress(QString());
}

void checkLoad(Quire::Queue &queue)
{
    const auto error = static_cast<HRESULT>(queue.GetError());
    if (FAILED(error))
        throw Failure(ExitCode::Failed,
                      QStringLiteral("cannot read all of %1: %2").arg(queue.Name(), reason(error, false)));
}

std::unique_ptr<Quire::Queue> loadQueue(Session &session, const QString &path, LoadLimit limit, Output &output)
{
    const TreeEntry entry = session.openQueue(path);
    const int wanted = limit.stories < 0 ? entry.count : std::min(limit.stories, static_cast<int>(entry.count));
    Quire::Queue::useThreading = true;
    Quire::Queue::setLoadIncrement(limit.stories < 0 ? std::numeric_limits<int>::max() : std::max(limit.stories, 1));
    auto queue = std::make_unique<Quire::Queue>(IDispatchPtr(entry.queue.GetInterfacePtr()));
    waitForLoad(*queue, wanted, output);
    checkLoad(*queue);
    return queue;
}

} // namespace Tool
