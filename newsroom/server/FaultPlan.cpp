#include <quire/newsroom/server/FaultPlan.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace Newsroom {

void FaultPlan::failCall(int n, const Fault &fault)
{
    add({QString(), n, false, fault});
}

void FaultPlan::failNext(const QString &operation, const Fault &fault, int k)
{
    add({operation, k, false, fault});
}

void FaultPlan::failEvery(const QString &operation, const Fault &fault)
{
    add({operation, 0, true, fault});
}

void FaultPlan::delayEveryCall(int microseconds)
{
    m_delay = microseconds;
}

void FaultPlan::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_plans.clear();
    m_armed = false;
    m_delay = 0;
    m_seen = 0;
    m_done = 0;
    m_lastFault.clear();
    ++m_wakes;
    m_changed.notify_all();
}

QString FaultPlan::lastFault() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lastFault;
}

int FaultPlan::hanging() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_hanging;
}

bool FaultPlan::waitForHang(int milliseconds) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return m_hanging > 0; });
}

Fault FaultPlan::next(const char *interfaceName, const char *operation)
{
    ++m_seen;
    return take(interfaceName, operation, true);
}

Fault FaultPlan::nextUncounted(const char *interfaceName, const char *operation)
{
    return take(interfaceName, operation, false);
}

void FaultPlan::delay() const
{
    if (const int microseconds = m_delay)
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

void FaultPlan::hang(int milliseconds)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const unsigned before = m_wakes;
    ++m_hanging;
    m_changed.notify_all();
    m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                       [this, before] { return m_closed || m_wakes != before; });
    --m_hanging;
}

void FaultPlan::close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

void FaultPlan::add(const Plan &plan)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_plans.push_back(plan);
    m_armed = true;
}

Fault FaultPlan::take(const char *interfaceName, const char *operation, bool counted)
{
    if (!m_armed)
        return Fault();

    const QString shortName = QLatin1String(operation);
    const QString fullName = QLatin1String(interfaceName) + QLatin1String("::") + shortName;
    const auto concerns = [&](const Plan &plan) {
        return plan.operation.isEmpty() ? counted : plan.operation == fullName || plan.operation == shortName;
    };

    const std::lock_guard<std::mutex> lock(m_mutex);
    Fault fault;
    for (Plan &plan : m_plans) {
        if (!concerns(plan))
            continue;
        const bool due = plan.every || --plan.remaining == 0;
        if (due && fault.kind() == Fault::Kind::None)
            fault = plan.fault;
    }
    const auto spent = [](const Plan &plan) { return !plan.every && plan.remaining <= 0; };
    m_plans.erase(std::remove_if(m_plans.begin(), m_plans.end(), spent), m_plans.end());
    m_armed = !m_plans.empty();
    if (fault.kind() != Fault::Kind::None) {
        ++m_done;
        m_lastFault = fullName;
    }
    return fault;
}

} // namespace Newsroom
