#include <quire/newsroom/server/LateBinding.h>

#ifdef _WIN32

#include <array>

#include <quire/orvex/Orvex.h>

namespace Newsroom {

namespace {

_COM_SMARTPTR_TYPEDEF(ITypeLib, __uuidof(ITypeLib));
_COM_SMARTPTR_TYPEDEF(ITypeInfo, __uuidof(ITypeInfo));

ITypeLibPtr fromOwnResources()
{
    HMODULE self = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&fromOwnResources), &self);
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(self, path.data(), static_cast<DWORD>(path.size()));
    ITypeLibPtr library;
    if (length > 0 && length < path.size())
        LoadTypeLibEx(path.data(), REGKIND_NONE, &library);
    return library;
}

ITypeLibPtr fromRegistry()
{
    ITypeLibPtr library;
    LoadRegTypeLib(__uuidof(Orvex::Library), 4, 0, LOCALE_NEUTRAL, &library);
    return library;
}

/// Loaded once and never let go: at the end of a process the system's own libraries may be gone first.
ITypeLib *library()
{
    static ITypeLib *const loaded = [] {
        ITypeLibPtr found = fromOwnResources();
        if (!found)
            found = fromRegistry();
        return found.Detach();
    }();
    return loaded;
}

/// A dual interface is described twice. The description to call by is the one of the table of functions; the other
/// would lead back to IDispatch.
HRESULT describedByTable(const ITypeInfoPtr &info, ITypeInfo **table)
{
    HREFTYPE reference = 0;
    const HRESULT result = info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference);
    return FAILED(result) ? result : info->GetRefTypeInfo(reference, table);
}

ITypeInfoPtr find(REFIID iid)
{
    ITypeInfoPtr described;
    ITypeInfoPtr table;
    if (library() && SUCCEEDED(library()->GetTypeInfoOfGuid(iid, &described)))
        describedByTable(described, &table);
    return table;
}

} // namespace

bool canBindLate(REFIID iid)
{
    return find(iid);
}

HRESULT lateTypeInfo(REFIID iid, ITypeInfo **info)
{
    *info = find(iid).Detach();
    return *info ? S_OK : E_NOTIMPL;
}

HRESULT lateNames(REFIID iid, LPOLESTR *names, UINT count, DISPID *ids)
{
    const ITypeInfoPtr info = find(iid);
    return info ? DispGetIDsOfNames(info, names, count, ids) : DISP_E_UNKNOWNNAME;
}

HRESULT lateInvoke(REFIID iid, void *object, DISPID member, WORD flags, DISPPARAMS *parameters, VARIANT *result,
                   EXCEPINFO *exception, UINT *wrongArgument)
{
    const ITypeInfoPtr info = find(iid);
    return info ? DispInvoke(object, info, member, flags, parameters, result, exception, wrongArgument)
                : DISP_E_MEMBERNOTFOUND;
}

} // namespace Newsroom

#else

namespace Newsroom {

bool canBindLate(REFIID)
{
    return false;
}

HRESULT lateTypeInfo(REFIID, ITypeInfo **info)
{
    *info = nullptr;
    return E_NOTIMPL;
}

HRESULT lateNames(REFIID, LPOLESTR *, UINT, DISPID *)
{
    return DISP_E_UNKNOWNNAME;
}

HRESULT lateInvoke(REFIID, void *, DISPID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *)
{
    return DISP_E_MEMBERNOTFOUND;
}

} // namespace Newsroom

#endif
