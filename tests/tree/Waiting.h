#pragma once

#include <QElapsedTimer>

#include <chrono>
#include <future>
#include <thread>

/// Longer than anything takes that does not hang, in milliseconds.
const int patience = 20000;

/// Whether the condition comes true; polls for as long as patience lasts.
template<typename Condition>
bool comesTrue(const Condition &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.hasExpired(patience))
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// What \a work gives on a thread of its own, which has ended when this returns.
template<typename Work>
auto onOtherThread(const Work &work)
{
    return std::async(std::launch::async, work).get();
}
