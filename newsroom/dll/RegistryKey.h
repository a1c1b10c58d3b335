#pragma once

#include <QString>

#include <quire/platform/Automation.h>

namespace Newsroom {

/// One key below HKEY_CLASSES_ROOT, opened for writing and made when it is not there.
///
/// The first failure is kept and makes the rest of the work with this key do nothing, so that a caller writes a whole
/// key and asks once. Used by one thread.
class RegistryKey
{
public:
    explicit RegistryKey(const QString &path);
    ~RegistryKey();

    RegistryKey(const RegistryKey &) = delete;
    RegistryKey &operator=(const RegistryKey &) = delete;

    /// Sets a text value; an empty \a name means the key's own value.
    RegistryKey &set(const QString &name, const QString &value);

    /// S_OK, or the HRESULT of the first thing that failed.
    HRESULT result() const { return HRESULT_FROM_WIN32(m_error); }

    /// The key's own value, null when there is no such key or value.
    static QString valueOf(const QString &path);

    /// Removes a key with all below it. One that is not there is no failure.
    static HRESULT removeTree(const QString &path);

private:
    HKEY m_key = nullptr;
    LSTATUS m_error = ERROR_SUCCESS;
};

} // namespace Newsroom
