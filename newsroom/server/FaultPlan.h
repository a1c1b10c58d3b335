#pragma once

#include <QString>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

#include <quire/newsroom/server/Fault.h>

namespace Newsroom {

/// Which of the coming calls of a server go wrong, and how.
///
/// Operations are named "Interface::Operation" as the call record names them ("IQueue2::GetList"), or by the operation
/// alone ("GetList", whatever the interface). Each planned fault happens once; plans count independently, and when two
/// fall on one call the one planned first happens. "QueryInterface" can be planned by its name, but is neither counted
/// nor recorded as a call.
///
/// Owned by the server; any thread may call any operation.
class FaultPlan
{
public:
    /// The n-th call from now on, of any operation, goes wrong; 1 is the next call.
    void failCall(int n, const Fault &fault);

    /// The k-th call from now on of that operation goes wrong; 1 is its next call.
    void failNext(const QString &operation, const Fault &fault, int k = 1);

    /// Every call of that operation goes wrong until clear().
    void failEvery(const QString &operation, const Fault &fault);

    /// Makes every call take that much longer; 0 ends it.
    void delayEveryCall(int microseconds);

    /// Forgets every plan and the delay, wakes every hanging call, and sets callsSeen() and faultsDone() to 0 and
    /// lastFault() to nothing.
    void clear();

    /// Calls begun since construction or the last clear().
    int callsSeen() const { return m_seen; }

    /// Faults that have happened since construction or the last clear().
    int faultsDone() const { return m_done; }

    /// Which call the last fault happened to since then, as "Interface::Operation"; empty when none did.
    QString lastFault() const;

    /// Calls that hang at this moment.
    int hanging() const;

    /// Waits until at least one call hangs; false when none does within that time.
    bool waitForHang(int milliseconds) const;

    // ---- for the server's objects

    /// Counts one call and tells what shall happen to it.
    Fault next(const char *interfaceName, const char *operation);

    /// As next(), for an operation that does not count as a call.
    Fault nextUncounted(const char *interfaceName, const char *operation);

    /// Waits for the constant delay.
    void delay() const;

    /// Waits that long, or until clear() or close().
    void hang(int milliseconds);

    /// Wakes every hanging call; from now on none hangs.
    void close();

private:
    struct Plan
    {
        QString operation; // empty: any
        int remaining;     // calls until it happens
        bool every;
        Fault fault;
    };

    void add(const Plan &plan);
    Fault take(const char *interfaceName, const char *operation, bool counted);

    std::atomic<int> m_seen{0};
    std::atomic<int> m_done{0};
    std::atomic<int> m_delay{0};
    std::atomic<bool> m_armed{false};

    mutable std::mutex m_mutex; // guards what follows; a leaf
    mutable std::condition_variable m_changed;
    std::vector<Plan> m_plans;
    QString m_lastFault;
    int m_hanging = 0;
    unsigned m_wakes = 0;
    bool m_closed = false;
};

} // namespace Newsroom
