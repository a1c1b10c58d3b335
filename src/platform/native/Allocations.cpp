#include <quire/platform/native/Allocations.h>

#include <quire/platform/System.h>

#include <atomic>

namespace Platform {

namespace {

std::atomic<int> countdown{0};
std::atomic<bool> failed{false};

} // namespace

void failAllocation(int n)
{
    countdown = 0;
    failed = false;
    countdown = n;
}

bool hasAllocationFailed()
{
    return failed;
}

namespace Detail {

bool mayAllocate() noexcept
{
    int left = countdown.load(std::memory_order_relaxed);
    while (left > 0 && !countdown.compare_exchange_weak(left, left - 1)) {
    }
    if (left == 1)
        failed = true;
    return left != 1;
}

} // namespace Detail
} // namespace Platform
