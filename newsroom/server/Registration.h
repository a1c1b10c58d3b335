#pragma once

#include <quire/platform/Automation.h>

namespace Newsroom {

/// Keeps a class object registered for a class identifier, and takes it out of the table at the end.
///
/// Belongs to the thread that made it, whose apartment must still be entered when it goes.
class Registration
{
public:
    /// Registers nothing.
    Registration() = default;

    /// Registers. result() tells whether that worked; CO_E_OBJISREG for instance does not throw.
    Registration(REFCLSID clsid, IUnknown *factory);
    ~Registration();

    Registration(const Registration &) = delete;
    Registration &operator=(const Registration &) = delete;
    /// Takes the registration over.
    Registration(Registration &&other) noexcept;
    /// Revokes its own and takes the other over.
    Registration &operator=(Registration &&other) noexcept;

    /// Whether the class object is in the table because of this object.
    bool isActive() const { return m_cookie != 0; }

    /// What CoRegisterClassObject answered; S_OK for a default-constructed object.
    HRESULT result() const { return m_result; }

    /// Takes the class object out of the table now.
    void revoke();

private:
    DWORD m_cookie = 0;
    HRESULT m_result = S_OK;
};

} // namespace Newsroom
