#include "RegistryKey.h"

namespace Newsroom {

namespace {

const wchar_t *wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

} // namespace

RegistryKey::RegistryKey(const QString &path)
{
    m_error = RegCreateKeyExW(HKEY_CLASSES_ROOT, wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr,
                              &m_key, nullptr);
}

RegistryKey::~RegistryKey()
{
    if (m_key)
        RegCloseKey(m_key);
}

RegistryKey &RegistryKey::set(const QString &name, const QString &value)
{
    if (m_error == ERROR_SUCCESS) {
        const auto bytes = static_cast<DWORD>((value.size() + 1) * static_cast<int>(sizeof(wchar_t)));
        m_error = RegSetValueExW(m_key, name.isEmpty() ? nullptr : wide(name), 0, REG_SZ,
                                 reinterpret_cast<const BYTE *>(value.utf16()), bytes);
    }
    return *this;
}

QString RegistryKey::valueOf(const QString &path)
{
    DWORD bytes = 0;
    if (RegGetValueW(HKEY_CLASSES_ROOT, wide(path), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS)
        return {};
    QString value(static_cast<int>(bytes / sizeof(wchar_t)), Qt::Uninitialized);
    if (RegGetValueW(HKEY_CLASSES_ROOT, wide(path), nullptr, RRF_RT_REG_SZ, nullptr, value.data(), &bytes) !=
        ERROR_SUCCESS)
        return {};
    value.truncate(static_cast<int>(bytes / sizeof(wchar_t)) - 1); // without the NUL that ends it
    return value;
}

HRESULT RegistryKey::removeTree(const QString &path)
{
    const LSTATUS error = RegDeleteTreeW(HKEY_CLASSES_ROOT, wide(path));
    return error == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(error);
}

} // namespace Newsroom
