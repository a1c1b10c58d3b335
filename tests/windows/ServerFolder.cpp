#include "windows/ServerFolder.h"

#include <QDir>
#include <QFile>

#include <quire/Quire.h>

ServerFolder::ServerFolder(const QString &name, const QString &dll)
    : m_path(m_root.filePath(name))
{
    QDir().mkpath(m_path);
    const QString file = Quire::QuireCOM::GetDLLName();
    const QString from = dll.isEmpty() ? QStringLiteral(QUIRE_SERVER_DIR "/") + file : dll;
    QFile::copy(from, this->dll());
}

ServerFolder::~ServerFolder()
{
    CoFreeUnusedLibrariesEx(0, 0);
    call("DllUnregisterServer");
}

QString ServerFolder::dll() const
{
    return m_path + QLatin1Char('/') + Quire::QuireCOM::GetDLLName();
}

long ServerFolder::call(const char *entryPoint) const
{
    const HMODULE module = LoadLibraryW(QDir::toNativeSeparators(dll()).toStdWString().c_str());
    if (!module)
        return HRESULT_FROM_WIN32(GetLastError());
    using EntryPoint = HRESULT(WINAPI *)();
    const auto entry = reinterpret_cast<EntryPoint>(reinterpret_cast<void *>(GetProcAddress(module, entryPoint)));
    const HRESULT result = entry ? entry() : E_NOTIMPL;
    FreeLibrary(module);
    return result;
}
