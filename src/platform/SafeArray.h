#pragma once

/// \file
/// The owner of a SAFEARRAY, and scoped access to its elements.

#include <quire/platform/Automation.h>

#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

namespace Platform {

/// The number of elements of the first dimension; 0 for null and for an array without dimensions.
inline ULONG elementCount(SAFEARRAY *array) noexcept
{
    LONG lower = 0;
    LONG upper = -1;
    if (FAILED(SafeArrayGetLBound(array, 1, &lower)) || FAILED(SafeArrayGetUBound(array, 1, &upper)))
        return 0;
    return static_cast<ULONG>(upper) - static_cast<ULONG>(lower) + 1;
}

/// The one owner of a SAFEARRAY. One thread at a time.
class SafeArray
{
public:
    /// Owns nothing.
    SafeArray() noexcept = default;
    /// Takes the array over.
    explicit SafeArray(SAFEARRAY *array) noexcept
        : m_array(array)
    {}
    /// A one-dimensional array of bytes (VT_UI1, lower bound 0) with a copy of the data. Owns nothing when the array
    /// cannot be made, which includes every size above what a LONG counts.
    static SafeArray ofBytes(const void *data, std::size_t size) noexcept
    {
        if (size > static_cast<std::size_t>(std::numeric_limits<LONG>::max()) || (size && !data))
            return SafeArray();
        SafeArray array(SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size)));
        void *bytes = nullptr;
        if (!array || FAILED(SafeArrayAccessData(array.get(), &bytes)))
            return SafeArray();
        if (size)
            std::memcpy(bytes, data, size);
        SafeArrayUnaccessData(array.get());
        return array;
    }
    /// Takes over what \a other owns, which owns nothing afterwards.
    SafeArray(SafeArray &&other) noexcept
        : m_array(other.release())
    {}
    /// Frees what is owned and takes over what \a other owns.
    SafeArray &operator=(SafeArray &&other) noexcept
    {
        if (this != &other) {
            destroy();
            m_array = other.release();
        }
        return *this;
    }
    SafeArray(const SafeArray &) = delete;
    SafeArray &operator=(const SafeArray &) = delete;
    ~SafeArray() { destroy(); }

    /// The array, still owned here; may be null.
    SAFEARRAY *get() const noexcept { return m_array; }
    /// Frees what is owned and hands out the place, for an out-parameter.
    SAFEARRAY **out() noexcept
    {
        destroy();
        return &m_array;
    }
    /// Hands the array over to the caller and owns nothing afterwards.
    SAFEARRAY *release() noexcept { return std::exchange(m_array, nullptr); }
    /// There is an array.
    explicit operator bool() const noexcept { return m_array != nullptr; }

    /// The number of elements of the first dimension; 0 for null.
    ULONG size() const noexcept { return elementCount(m_array); }

private:
    void destroy() noexcept { SafeArrayDestroy(release()); }

    SAFEARRAY *m_array = nullptr;
};

/// Keeps an array locked and its elements within reach for one scope. Does not own the array, which must outlive it.
class SafeArrayAccess
{
public:
    /// Locks; `ok` and `result` tell how that went. A null array fails with E_INVALIDARG.
    explicit SafeArrayAccess(SAFEARRAY *array) noexcept
        : m_array(array)
        , m_result(SafeArrayAccessData(array, &m_data))
    {}
    SafeArrayAccess(const SafeArrayAccess &) = delete;
    SafeArrayAccess &operator=(const SafeArrayAccess &) = delete;
    ~SafeArrayAccess()
    {
        if (ok())
            SafeArrayUnaccessData(m_array);
    }

    /// The elements are accessible.
    bool ok() const noexcept { return SUCCEEDED(m_result); }
    /// What the system said to that.
    HRESULT result() const noexcept { return m_result; }
    /// The first element; null when the lock failed, and for an array that never got memory for its elements.
    void *data() const noexcept { return ok() ? m_data : nullptr; }
    /// The first element as what the caller knows it to be.
    template<typename T>
    T *as() const noexcept
    {
        return static_cast<T *>(data());
    }
    /// The number of elements of the first dimension, 0 without the first element: so many are there, whatever the
    /// array says.
    ULONG size() const noexcept { return data() ? elementCount(m_array) : 0; }

private:
    SAFEARRAY *m_array;
    void *m_data = nullptr;
    HRESULT m_result;
};

} // namespace Platform
