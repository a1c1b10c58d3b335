#pragma once

#include <QString>

#include <quire/platform/Automation.h>

namespace Newsroom {

/// Enters the sign-on class and the type library into the registry, with the DLL at \a dllPath as their in-process
/// server: class identifier, ProgID "Orvex.Signon", threading model Both. Another DLL registered for the class is
/// replaced. When anything fails, what was written is taken back.
HRESULT registerServer(const QString &dllPath);

/// Takes the entries out again. When the class belongs to another DLL by now, its entries stay.
HRESULT unregisterServer(const QString &dllPath);

} // namespace Newsroom
