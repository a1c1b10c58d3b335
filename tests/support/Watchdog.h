#pragma once

#include <QElapsedTimer>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

/// Ends the program when one of the threads that it watches does nothing for a minute: a deadlock must not look like a
/// slow machine. Threads are numbered from 0; each reports for itself.
class Watchdog
{
public:
    explicit Watchdog(int threads)
        : m_rounds(static_cast<std::size_t>(threads))
        , m_gone(static_cast<std::size_t>(threads))
        , m_thread([this] { watch(); })
    {}
    ~Watchdog()
    {
        m_done = true;
        m_thread.join();
    }
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    void alive(int thread) { ++m_rounds[static_cast<std::size_t>(thread)]; }
    void gone(int thread) { m_gone[static_cast<std::size_t>(thread)] = true; }
    /// How often all threads together were alive.
    long long rounds() const
    {
        long long sum = 0;
        for (const std::atomic<long long> &rounds : m_rounds)
            sum += rounds;
        return sum;
    }

private:
    void watch()
    {
        std::vector<long long> seen(m_rounds.size());
        std::vector<QElapsedTimer> still(m_rounds.size());
        for (QElapsedTimer &timer : still)
            timer.start();
        while (!m_done) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            for (std::size_t thread = 0; thread < seen.size(); ++thread) {
                if (m_gone[thread] || m_rounds[thread] != seen[thread])
                    still[thread].restart();
                seen[thread] = m_rounds[thread];
                if (still[thread].hasExpired(60000)) {
                    std::fprintf(stderr, "Thread %d has not moved for a minute: deadlock.\n", static_cast<int>(thread));
                    std::abort();
                }
            }
        }
    }

    std::vector<std::atomic<long long>> m_rounds;
    std::vector<std::atomic<bool>> m_gone;
    std::atomic<bool> m_done{false};
    std::thread m_thread;
};
