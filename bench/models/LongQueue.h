#pragma once

#include <QCoreApplication>

#include <quire/models/QueueModel.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/tree/Queue.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

/// A session on a newsroom with one queue of 100,000 stories, Q.LONG, each with a header and 12 fields.
class LongQueue
{
public:
    static constexpr int stories = 100000;

    LongQueue();
    ~LongQueue();
    LongQueue(const LongQueue &) = delete;
    LongQueue &operator=(const LongQueue &) = delete;

    /// A model that shows the whole queue.
    std::unique_ptr<Quire::QueueModel> load();
    /// The whole queue by the library's own means.
    static std::unique_ptr<Quire::Queue> loadList();
    /// Gives a story another title.
    void change(int story);

    static QString path() { return QStringLiteral("Q.LONG"); }

private:
    std::shared_ptr<Newsroom::Model> m_newsroom;
    Newsroom::Server m_server;
    Newsroom::Registration m_registration;
};

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// How long the event loop was held while something was waited for, in milliseconds.
struct Held
{
    double longest = 0;
    double all = 0;
};

/// Runs the event loop, once in a millisecond, until \a ended is true.
template<typename Condition>
Held waitFor(const Condition &ended)
{
    Held held;
    while (!ended()) {
        const auto start = Clock::now();
        QCoreApplication::processEvents();
        const double took = millisecondsSince(start);
        held.longest = std::max(held.longest, took);
        held.all += took;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return held;
}
