#include "support/NoMemory.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int count = 0;
thread_local int failing = 0;
thread_local bool failed = false;

// NOLINTBEGIN(cppcoreguidelines-no-malloc): these are what others get their memory from

void *allocate(std::size_t size)
{
    if (++count == failing) {
        failed = true;
        throw std::bad_alloc();
    }
    if (void *const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

// Both kinds: under a sanitizer the second does not come to the first.
void *operator new(std::size_t size)
{
    return allocate(size);
}

void *operator new[](std::size_t size)
{
    return allocate(size);
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
try {
    return allocate(size);
} catch (const std::bad_alloc &) {
    return nullptr;
}

void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
try {
    return allocate(size);
} catch (const std::bad_alloc &) {
    return nullptr;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}

// NOLINTEND(cppcoreguidelines-no-malloc)

NoMemory::NoMemory(int n)
{
    failed = false;
    count = 0;
    failing = n;
}

NoMemory::~NoMemory()
{
    failing = 0;
}

bool NoMemory::hasFailed() const
{
    return failed;
}

int NoMemory::allocations() const
{
    return count;
}
