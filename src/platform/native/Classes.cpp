#include <quire/platform/native/Classes.h>

#include <quire/platform/Automation.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

struct ClassEntry
{
    CLSID clsid;
    DWORD context;
    DWORD cookie;
    IUnknownPtr factory;
};

class ClassTable
{
public:
    HRESULT add(REFCLSID clsid, IUnknown *factory, DWORD context, DWORD flags, DWORD *cookie)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!(flags & (REGCLS_MULTIPLEUSE | REGCLS_MULTI_SEPARATE)) && lookUp(clsid, context))
            return CO_E_OBJISREG;
        *cookie = ++m_lastCookie;
        m_entries.push_back({clsid, context, *cookie, factory});
        return S_OK;
    }

    /// The reference is handed out, so that it is released when the lock is free again: a class object's last Release
    /// may call back into the table.
    IUnknownPtr take(DWORD cookie)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                        [cookie](const ClassEntry &each) { return each.cookie == cookie; });
        if (entry == m_entries.end())
            return nullptr;
        const IUnknownPtr factory = entry->factory;
        m_entries.erase(entry);
        return factory;
    }

    IUnknownPtr find(REFCLSID clsid, DWORD context)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        const ClassEntry *entry = lookUp(clsid, context);
        return entry ? entry->factory : nullptr;
    }

private:
    const ClassEntry *lookUp(REFCLSID clsid, DWORD context) const
    {
        const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [&](const ClassEntry &each) {
            return each.clsid == clsid && (each.context & context);
        });
        return entry == m_entries.end() ? nullptr : &*entry;
    }

    std::mutex m_mutex;
    std::vector<ClassEntry> m_entries;
    DWORD m_lastCookie = 0;
};

/// Never destroyed: class objects that are still registered at the process's end live in libraries that may be gone by
/// then.
ClassTable &table()
{
    static ClassTable *const classes = new ClassTable;
    return *classes;
}

/// How the calling thread takes part.
struct Apartment
{
    unsigned count = 0;
    DWORD kind = 0;
};

Apartment &apartment()
{
    thread_local Apartment calling;
    return calling;
}

} // namespace

HRESULT CoRegisterClassObject(REFCLSID clsid, LPUNKNOWN factory, DWORD context, DWORD flags, LPDWORD cookie)
{
    if (!factory || !cookie)
        return E_INVALIDARG;
    *cookie = 0;
    return table().add(clsid, factory, context, flags, cookie);
}

HRESULT CoRevokeClassObject(DWORD cookie)
{
    return table().take(cookie) ? S_OK : CO_E_OBJNOTREG;
}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, LPVOID, REFIID riid, LPVOID *object)
{
    if (!object)
        return E_INVALIDARG;
    *object = nullptr;
    const IUnknownPtr factory = table().find(clsid, context);
    if (!factory)
        return REGDB_E_CLASSNOTREG;
    const HRESULT result = factory->QueryInterface(riid, object);
    if (FAILED(result))
        *object = nullptr;
    return result;
}

HRESULT CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID riid, LPVOID *object)
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    IClassFactory *found = nullptr;
    HRESULT result = CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, reinterpret_cast<void **>(&found));
    if (FAILED(result))
        return result;
    const IClassFactoryPtr factory(found, false);
    result = factory->CreateInstance(outer, riid, object);
    if (FAILED(result))
        *object = nullptr;
    return result;
}

HRESULT OleRun(LPUNKNOWN object)
{
    if (!object)
        return E_INVALIDARG;
    IRunnableObject *runnable = nullptr;
    if (FAILED(object->QueryInterface(IID_IRunnableObject, reinterpret_cast<void **>(&runnable))))
        return S_OK;
    const HRESULT result = runnable->Run(nullptr);
    runnable->Release();
    return result;
}

HRESULT CoInitializeEx(LPVOID reserved, DWORD mode)
{
    if (reserved)
        return E_INVALIDARG;
    Apartment &calling = apartment();
    const DWORD kind = mode & COINIT_APARTMENTTHREADED;
    if (calling.count > 0 && calling.kind != kind)
        return RPC_E_CHANGED_MODE;
    calling.kind = kind;
    return calling.count++ == 0 ? S_OK : S_FALSE;
}

HRESULT CoInitialize(LPVOID reserved)
{
    return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED);
}

void CoUninitialize()
{
    if (apartment().count > 0)
        --apartment().count;
}
