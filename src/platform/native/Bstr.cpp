#include <quire/platform/native/Bstr.h>

#include <quire/platform/System.h>
#include <quire/platform/native/Allocations.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

/// The length in bytes lies in the last 4 of the bytes before the text; there are 8, so that the text is as aligned as
/// the system's.
constexpr std::size_t lengthPrefix = 8;
constexpr UINT maximumString = 0x7FFFFFF0;

std::atomic<__int64> stringCount{0};

char *block(BSTR string)
{
    return reinterpret_cast<char *>(string) - lengthPrefix;
}

BSTR allocate(const void *bytes, std::size_t size)
{
    // A whole NUL character behind an odd number of bytes, too.
    const std::size_t padding = sizeof(OLECHAR) + size % sizeof(OLECHAR);
    const bool mayBe = size <= maximumString && Platform::Detail::mayAllocate();
    // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): a text is freed by whoever has it, with SysFreeString
    char *memory = mayBe ? static_cast<char *>(std::malloc(lengthPrefix + size + padding)) : nullptr;
    if (!memory)
        return nullptr;
    const UINT length = static_cast<UINT>(size);
    std::memset(memory, 0, lengthPrefix);
    std::memcpy(memory + lengthPrefix - sizeof length, &length, sizeof length);
    if (bytes)
        std::memcpy(memory + lengthPrefix, bytes, size);
    std::memset(memory + lengthPrefix + size, 0, padding);
    stringCount.fetch_add(1, std::memory_order_relaxed);
    return reinterpret_cast<BSTR>(memory + lengthPrefix);
}

std::size_t bytesOf(std::size_t characters)
{
    return characters * sizeof(OLECHAR);
}

} // namespace

BSTR SysAllocString(const OLECHAR *text)
{
    return text ? allocate(text, bytesOf(std::char_traits<OLECHAR>::length(text))) : nullptr;
}

BSTR SysAllocStringLen(const OLECHAR *text, UINT length)
{
    return allocate(text, bytesOf(length));
}

BSTR SysAllocStringByteLen(LPCSTR bytes, UINT size)
{
    return allocate(bytes, size);
}

INT SysReAllocString(BSTR *string, const OLECHAR *text)
{
    if (!string)
        return FALSE;
    BSTR replacement = SysAllocString(text);
    if (!replacement && text)
        return FALSE;
    SysFreeString(*string);
    *string = replacement;
    return TRUE;
}

void SysFreeString(BSTR string)
{
    if (!string)
        return;
    stringCount.fetch_sub(1, std::memory_order_relaxed);
    std::free(block(string)); // NOLINT(cppcoreguidelines-no-malloc): from allocate
}

UINT SysStringByteLen(BSTR string)
{
    if (!string)
        return 0;
    UINT length = 0;
    std::memcpy(&length, block(string) + lengthPrefix - sizeof length, sizeof length);
    return length;
}

UINT SysStringLen(BSTR string)
{
    return SysStringByteLen(string) / static_cast<UINT>(sizeof(OLECHAR));
}

namespace Platform {

__int64 liveBstrs()
{
    return stringCount.load(std::memory_order_relaxed);
}

namespace Detail {

std::u16string fromWide(const wchar_t *text, std::size_t length)
{
    std::u16string converted;
    converted.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        const auto character = static_cast<char32_t>(text[i]);
        if (character < 0x10000) {
            converted += static_cast<char16_t>(character);
        } else {
            converted += static_cast<char16_t>(0xD7C0 + (character >> 10));
            converted += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        }
    }
    return converted;
}

} // namespace Detail

} // namespace Platform
