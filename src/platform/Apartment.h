#pragma once

/// \file
/// A thread's membership in the automation library.

#include <quire/platform/Automation.h>

namespace Platform {

/// The thread's membership in the automation library: joined when made, left when destroyed, on the same thread.
class Apartment
{
public:
    Apartment() noexcept
        : m_result(CoInitializeEx(nullptr, COINIT_MULTITHREADED))
    {}
    ~Apartment()
    {
        if (SUCCEEDED(m_result))
            CoUninitialize();
    }
    Apartment(const Apartment &) = delete;
    Apartment &operator=(const Apartment &) = delete;

private:
    HRESULT m_result;
};

} // namespace Platform
