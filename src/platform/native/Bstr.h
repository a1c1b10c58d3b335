#pragma once

/// \file
/// BSTR: UTF-16 text with its length in bytes in the 4 bytes before it and a NUL behind it. Any thread may use any of
/// these functions; a BSTR itself belongs to one owner at a time.

#include <quire/platform/Export.h>
#include <quire/platform/native/Types.h>

#include <string>
#include <type_traits>

/// A copy of a NUL-terminated text. Null for a null text or without memory.
QUIRE_PLATFORM_EXPORT BSTR SysAllocString(const OLECHAR *text);

/// `length` characters, embedded NULs included. A null text leaves the characters undefined. Null without memory.
QUIRE_PLATFORM_EXPORT BSTR SysAllocStringLen(const OLECHAR *text, UINT length);

/// `size` bytes, which may be an odd number.
QUIRE_PLATFORM_EXPORT BSTR SysAllocStringByteLen(LPCSTR bytes, UINT size);

/// Replaces `*string` by a copy of the text, which may lie within it. FALSE, and nothing changed, without memory.
QUIRE_PLATFORM_EXPORT INT SysReAllocString(BSTR *string, const OLECHAR *text);

/// Frees; null is allowed.
QUIRE_PLATFORM_EXPORT void SysFreeString(BSTR string);

/// Length in characters and in bytes; 0 for null.
QUIRE_PLATFORM_EXPORT UINT SysStringLen(BSTR string);
QUIRE_PLATFORM_EXPORT UINT SysStringByteLen(BSTR string);

namespace Platform::Detail {
/// The UTF-16 form of a text of the compiler's wide characters, which have 32 bits here.
QUIRE_PLATFORM_EXPORT std::u16string fromWide(const wchar_t *text, std::size_t length);
} // namespace Platform::Detail

/// L"..." works as it does where the compiler's wide characters are the automation's. Templates, so that a null pointer
/// constant still means the functions above.
template<typename Char, typename = std::enable_if_t<std::is_same_v<Char, wchar_t>>>
BSTR SysAllocString(const Char *text)
{
    if (!text)
        return nullptr;
    return SysAllocString(Platform::Detail::fromWide(text, std::char_traits<wchar_t>::length(text)).c_str());
}
template<typename Char, typename = std::enable_if_t<std::is_same_v<Char, wchar_t>>>
BSTR SysAllocStringLen(const Char *text, UINT length)
{
    if (!text)
        return SysAllocStringLen(nullptr, length);
    const std::u16string converted = Platform::Detail::fromWide(text, length);
    return SysAllocStringLen(converted.data(), static_cast<UINT>(converted.size()));
}
