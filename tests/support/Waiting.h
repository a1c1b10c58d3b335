#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

/// Longer than anything takes that does not hang, in milliseconds.
const int patience = 20000;

/// Runs the event loop until the condition is true; false when patience ends first.
template<typename Condition>
bool comes(const Condition &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(patience))
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    }
    return true;
}
