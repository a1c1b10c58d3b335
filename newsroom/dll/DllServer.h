#pragma once

#include <memory>
#include <mutex>

#include <quire/newsroom/Newsroom.h>
#include <quire/newsroom/store/Store.h>

namespace Newsroom {

/// The server behind a DLL's entry points, made when the class is first asked for.
///
/// It works on the newsroom folder that the environment variable ORVEX_NEWSROOM names, into which it writes what
/// clients change; on the built-in sample without one. A folder that cannot be opened makes the class unavailable, with
/// the reason on the debugger output. Any thread may call any operation.
class DllServer
{
public:
    /// The one of this DLL. Never destroyed: at the end of a process its delivery thread is gone already, and waiting
    /// for it while the system unloads the DLL would hang. canUnload() is what ends the server in good order.
    static DllServer &instance();

    /// The class object, as DllGetClassObject answers it.
    HRESULT classObject(REFCLSID clsid, REFIID iid, void **object);

    /// Whether no client holds anything; the server is then ended, and made anew when the class is asked for again.
    bool canUnload();

private:
    DllServer() = default;

    bool open();

    std::mutex m_mutex; // guards what follows; held while the server is made, so that there is one
    std::unique_ptr<Store> m_store;
    std::unique_ptr<Server> m_server;
};

} // namespace Newsroom
