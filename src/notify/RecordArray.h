#pragma once

/// \file
/// Records in an array that a server sent.

#include <quire/platform/SafeArray.h>

namespace Quire {

/// The records of an array, locked for one scope. Whatever the array is, reading from begin() to end() is safe: there
/// are no records unless it has one dimension and elements of their size, and unless it says that it holds records or,
/// as plain memory, nothing at all of what it holds. Does not own the array, which may be null.
template<typename Record>
class RecordArray
{
public:
    explicit RecordArray(SAFEARRAY *array) noexcept
        : m_access(array)
    {
        if (m_access.data() && holdsRecords(array))
            m_size = m_access.size();
    }

    /// The array could be locked.
    bool isLocked() const noexcept { return m_access.ok(); }
    ULONG size() const noexcept { return m_size; }
    const Record *begin() const noexcept { return m_access.template as<const Record>(); }
    const Record *end() const noexcept { return begin() + m_size; }

private:
    static bool holdsRecords(SAFEARRAY *array) noexcept
    {
        if (SafeArrayGetDim(array) != 1 || SafeArrayGetElemsize(array) != sizeof(Record))
            return false;
        VARTYPE type = VT_EMPTY;
        return FAILED(SafeArrayGetVartype(array, &type)) || type == VT_RECORD || type == VT_EMPTY;
    }

    const Platform::SafeArrayAccess m_access;
    ULONG m_size = 0;
};

} // namespace Quire
