#pragma once

/// \file
/// _bstr_t, the text type of _com_error.

#include <quire/platform/native/Bstr.h>
#include <quire/platform/native/Results.h>

#include <memory>
#include <string>
#include <type_traits>

/// Raises `_com_error`.
[[noreturn]] QUIRE_PLATFORM_EXPORT void _com_issue_error(HRESULT result);

namespace _com_util {
inline void CheckError(HRESULT result)
{
    if (FAILED(result))
        _com_issue_error(result);
}
/// Local 8-bit text to a BSTR, which the caller frees, and back to text that the caller frees with delete[]. Null for
/// null.
QUIRE_PLATFORM_EXPORT BSTR ConvertStringToBSTR(const char *text);
QUIRE_PLATFORM_EXPORT char *ConvertBSTRToString(BSTR string);
} // namespace _com_util

/// A shared, counted BSTR; copies share one text and never fail. What allocates raises `_com_error` E_OUTOFMEMORY.
class QUIRE_PLATFORM_EXPORT _bstr_t
{
public:
    _bstr_t() noexcept = default;
    _bstr_t(const _bstr_t &other) noexcept = default;
    _bstr_t(const char *text);
    _bstr_t(const OLECHAR *text);
    /// L"..." as well, whose characters are not the automation's here.
    template<typename Char, typename = std::enable_if_t<std::is_same_v<Char, wchar_t>>>
    _bstr_t(const Char *text)
    {
        if (text)
            *this = Platform::Detail::fromWide(text, std::char_traits<wchar_t>::length(text)).c_str();
    }
    /// With `copy` false the object takes the string over.
    _bstr_t(BSTR string, bool copy);
    ~_bstr_t() = default;

    _bstr_t &operator=(const _bstr_t &other) noexcept = default;
    _bstr_t &operator=(const char *text);
    _bstr_t &operator=(const OLECHAR *text);
    _bstr_t &operator+=(const _bstr_t &other);
    _bstr_t operator+(const _bstr_t &other) const;

    operator const OLECHAR *() const noexcept { return string(); }
    operator OLECHAR *() const noexcept { return string(); }
    /// The local 8-bit form, kept as long as the text.
    operator const char *() const;
    operator char *() const;

    bool operator!() const noexcept { return !string(); }
    bool operator==(const _bstr_t &other) const noexcept { return compare(other) == 0; }
    bool operator!=(const _bstr_t &other) const noexcept { return compare(other) != 0; }
    bool operator<(const _bstr_t &other) const noexcept { return compare(other) < 0; }
    bool operator>(const _bstr_t &other) const noexcept { return compare(other) > 0; }
    bool operator<=(const _bstr_t &other) const noexcept { return compare(other) <= 0; }
    bool operator>=(const _bstr_t &other) const noexcept { return compare(other) >= 0; }

    /// A copy that the caller frees, or with `copy` false the text itself.
    BSTR copy(bool copy = true) const;
    unsigned int length() const noexcept { return SysStringLen(string()); }
    void Assign(BSTR string);
    BSTR &GetBSTR();
    /// Frees and hands out the place, for an out-parameter.
    BSTR *GetAddress();
    void Attach(BSTR string);
    /// Hands the text over. Raises `_com_error` E_POINTER when it is shared or there is none.
    BSTR Detach();

private:
    struct Data;
    BSTR string() const noexcept;
    int compare(const _bstr_t &other) const noexcept;

    std::shared_ptr<Data> m_data;
};

QUIRE_PLATFORM_EXPORT _bstr_t operator+(const char *left, const _bstr_t &right);
QUIRE_PLATFORM_EXPORT _bstr_t operator+(const OLECHAR *left, const _bstr_t &right);
