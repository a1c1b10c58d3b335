#pragma once

/// \file
/// Records in an array that a server sent.

#include <quire/platform/Automation.h>
#include <quire/platform/SafeArray.h>

namespace Quire {

/// The records of an array, locked for one scope. Does not own the array, which may be null.
///
/// There are no records unless the array has one dimension and elements of their size, and unless it says that it holds
/// records or, as plain memory, nothing at all of what it holds; nor where it describes its records as those of another
/// kind. More cannot be told: that there is memory for as many elements as it says, and that in memory without a
/// description, or with one that does not tell the kind, there are records of this kind, is believed.
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
        if (SUCCEEDED(SafeArrayGetVartype(array, &type)) && type != VT_RECORD && type != VT_EMPTY)
            return false;
        return !isDescribedOtherwise(array);
    }

    /// The description is the server's code, and may fail in any way.
    static bool isDescribedOtherwise(SAFEARRAY *array) noexcept
    try {
        IRecordInfoPtr description;
        if (FAILED(SafeArrayGetRecordInfo(array, &description)) || !description)
            return false;
        GUID kind{};
        return SUCCEEDED(description->GetGuid(&kind)) && !IsEqualGUID(kind, GUID{}) &&
               !IsEqualGUID(kind, __uuidof(Record));
    } catch (...) {
        return false;
    }

    const Platform::SafeArrayAccess m_access;
    ULONG m_size = 0;
};

} // namespace Quire
