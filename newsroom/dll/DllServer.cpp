#include "DllServer.h"

#include <array>

#include <quire/newsroom/sample/Sample.h>

namespace Newsroom {

namespace {

/// Asked of the system: the run-time library's copy of the environment is as old as the process.
QString newsroomFolder()
{
    std::array<wchar_t, 32768> value{};
    const DWORD length = GetEnvironmentVariableW(L"ORVEX_NEWSROOM", value.data(), static_cast<DWORD>(value.size()));
    return length < value.size() ? QString::fromWCharArray(value.data(), static_cast<int>(length)) : QString();
}

} // namespace

DllServer &DllServer::instance()
{
    static auto *const server = new DllServer;
    return *server;
}

HRESULT DllServer::classObject(REFCLSID clsid, REFIID iid, void **object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (clsid != __uuidof(Orvex::Signon))
        return CLASS_E_CLASSNOTAVAILABLE;
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!m_server && !open())
        return CO_E_SERVER_EXEC_FAILURE;
    return m_server->classFactory()->QueryInterface(iid, object);
}

bool DllServer::canUnload()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_server && m_server->census()->live() > 0)
        return false;
    m_server.reset();
    m_store.reset();
    return true;
}

bool DllServer::open()
{
    std::shared_ptr<Model> model;
    const QString folder = newsroomFolder();
    if (folder.isEmpty()) {
        model = sampleModel();
    } else {
        QString error;
        m_store = Store::open(folder, &error);
        if (!m_store) {
            OutputDebugStringW(reinterpret_cast<const wchar_t *>((error + QLatin1Char('\n')).utf16()));
            return false;
        }
        model = m_store->model();
    }
    m_server = std::make_unique<Server>(model);
    return true;
}

} // namespace Newsroom
