#include "Interrupt.h"

#include <csignal>

namespace Tool {

namespace {

volatile std::sig_atomic_t requested = 0;

extern "C" void noteInterrupt(int number)
{
    requested = 1;
    std::signal(number, SIG_DFL);
}

} // namespace

Interrupt::Interrupt()
{
    requested = 0;
    m_former = std::signal(SIGINT, noteInterrupt);
}

Interrupt::~Interrupt()
{
    std::signal(SIGINT, m_former == SIG_ERR ? SIG_DFL : m_former);
}

bool Interrupt::isRequested() const
{
    return requested != 0;
}

} // namespace Tool
