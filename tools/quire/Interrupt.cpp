#include "Interrupt.h"

#include <atomic>
#include <csignal>

namespace Tool {

namespace {

// Windows calls the handler on a thread of its own, and elsewhere any thread may be the one that is interrupted. Of the
// atomic types those without a lock may be used there.
std::atomic<bool> requested{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void noteInterrupt(int number)
{
    requested = true;
    std::signal(number, SIG_DFL);
}

} // namespace

Interrupt::Interrupt()
{
    requested = false;
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): not before the last request is forgotten
    m_former = std::signal(SIGINT, noteInterrupt);
}

Interrupt::~Interrupt()
{
    std::signal(SIGINT, m_former == SIG_ERR ? SIG_DFL : m_former);
}

bool Interrupt::isRequested() const
{
    return requested;
}

} // namespace Tool
