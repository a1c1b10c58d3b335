#pragma once

/// \file
/// Memory that runs out when a test says so; natively only. A program that has NoMemory.cpp gets it for all of its
/// C++ allocations, also for those in the library. Qt's own containers allocate otherwise and never fail.

/// While it lives, one C++ allocation of its thread fails: the n-th from now on. With 0 none does; they are counted.
class NoMemory
{
public:
    explicit NoMemory(int n = 0);
    ~NoMemory();
    NoMemory(const NoMemory &) = delete;
    NoMemory &operator=(const NoMemory &) = delete;

    /// Whether it came to that.
    bool hasFailed() const;
    /// How many there were.
    int allocations() const;
};
