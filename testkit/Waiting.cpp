#include <quire/testkit/Waiting.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QThread>

namespace Quire {
namespace TestKit {

namespace {

void processEvents()
{
    QCoreApplication::processEvents();
    // No loop runs that would do it at its end.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

bool waitUntil(const std::function<bool()> &condition, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        processEvents();
        QThread::msleep(1);
    }
    return true;
}

bool eventually(const Place &place, const char *text, const std::function<bool()> &condition, int milliseconds)
{
    if (waitUntil(condition, milliseconds))
        return true;
    report(place, QStringLiteral("%1\n  does not hold after %2 ms").arg(QString::fromUtf8(text)).arg(milliseconds));
    return false;
}

} // namespace TestKit
} // namespace Quire
