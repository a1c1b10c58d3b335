#pragma once

#include <gtest/gtest.h>

#include <quire/platform/Automation.h>

/// Takes part in the automation for the length of a test or of a thread's work, as every user of it must.
class Apartment
{
public:
    Apartment() { CoInitializeEx(nullptr, COINIT_MULTITHREADED); }
    Apartment(const Apartment &) = delete;
    Apartment &operator=(const Apartment &) = delete;
    ~Apartment() { CoUninitialize(); }
};

/// The base of tests on the automation.
class ComFixture : public testing::Test
{
private:
    Apartment m_apartment;
};

/// The code of the `_com_error` that `action` raises; S_OK when it raises none.
template<typename Action>
HRESULT raisedBy(const Action &action)
{
    try {
        action();
    } catch (const _com_error &error) {
        return error.Error();
    }
    return S_OK;
}
