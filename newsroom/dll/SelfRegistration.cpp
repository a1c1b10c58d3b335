#include "SelfRegistration.h"

#include <QDir>

#include <string>

#include <quire/orvex/Orvex.h>
#include <quire/platform/Bstr.h>

#include "RegistryKey.h"

namespace Newsroom {

namespace {

_COM_SMARTPTR_TYPEDEF(ITypeLib, __uuidof(ITypeLib));

const auto progId = QStringLiteral("Orvex.Signon");
const auto description = QStringLiteral("Orvex newsroom sign-on (stand-in)");

QString braced(REFGUID id)
{
    OLECHAR text[40] = {};
    StringFromGUID2(id, text, 40);
    return QString::fromWCharArray(text);
}

QString classKey()
{
    return QStringLiteral("CLSID\\") + braced(__uuidof(Orvex::Signon));
}

QString serverKey()
{
    return classKey() + QStringLiteral("\\InprocServer32");
}

HRESULT writeClass(const QString &dllPath)
{
    const HRESULT results[] = {
        RegistryKey(classKey()).set({}, description).result(),
        RegistryKey(serverKey())
            .set({}, QDir::toNativeSeparators(dllPath))
            .set(QStringLiteral("ThreadingModel"), QStringLiteral("Both"))
            .result(),
        RegistryKey(classKey() + QStringLiteral("\\ProgID")).set({}, progId).result(),
        RegistryKey(classKey() + QStringLiteral("\\TypeLib")).set({}, braced(__uuidof(Orvex::Library))).result(),
        RegistryKey(progId).set({}, description).result(),
        RegistryKey(progId + QStringLiteral("\\CLSID")).set({}, braced(__uuidof(Orvex::Signon))).result(),
    };
    for (const HRESULT result : results) {
        if (FAILED(result))
            return SELFREG_E_CLASS;
    }
    return S_OK;
}

HRESULT removeClass()
{
    const HRESULT ofClass = RegistryKey::removeTree(classKey());
    const HRESULT ofProgId = RegistryKey::removeTree(progId);
    return FAILED(ofClass) || FAILED(ofProgId) ? SELFREG_E_CLASS : S_OK;
}

HRESULT writeTypeLibrary(const QString &dllPath)
{
    std::wstring path = QDir::toNativeSeparators(dllPath).toStdWString();
    ITypeLibPtr library;
    if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library)))
        return SELFREG_E_TYPELIB;
    return FAILED(RegisterTypeLib(library, path.data(), nullptr)) ? SELFREG_E_TYPELIB : S_OK;
}

bool isTypeLibraryRegistered()
{
    Platform::Bstr path;
    return SUCCEEDED(QueryPathOfRegTypeLib(__uuidof(Orvex::Library), 4, 0, LOCALE_NEUTRAL, path.out()));
}

HRESULT removeTypeLibrary()
{
    if (!isTypeLibraryRegistered())
        return S_OK;
    const HRESULT result = UnRegisterTypeLib(__uuidof(Orvex::Library), 4, 0, LOCALE_NEUTRAL, SYS_WIN64);
    return FAILED(result) ? SELFREG_E_TYPELIB : S_OK;
}

} // namespace

HRESULT registerServer(const QString &dllPath)
{
    HRESULT result = writeClass(dllPath);
    if (SUCCEEDED(result))
        result = writeTypeLibrary(dllPath);
    if (FAILED(result)) {
        removeTypeLibrary();
        removeClass();
    }
    return result;
}

HRESULT unregisterServer(const QString &dllPath)
{
    const QString registered = RegistryKey::valueOf(serverKey());
    if (!registered.isNull() && registered.compare(QDir::toNativeSeparators(dllPath), Qt::CaseInsensitive) != 0)
        return S_OK;
    const HRESULT ofLibrary = removeTypeLibrary();
    const HRESULT ofClass = removeClass();
    return FAILED(ofClass) ? ofClass : ofLibrary;
}

} // namespace Newsroom
