#pragma once

/// \file
/// GUIDs: comparing, `__uuidof`, and their text form.

#include <quire/platform/Export.h>
#include <quire/platform/native/Types.h>

#include <cstring>
#include <type_traits>

struct _GUID
{
    ULONG Data1;
    USHORT Data2;
    USHORT Data3;
    BYTE Data4[8];
};
typedef _GUID GUID;
typedef GUID IID;
typedef GUID CLSID;
typedef GUID *LPGUID;
typedef const GUID *LPCGUID;
typedef IID *LPIID;
typedef CLSID *LPCLSID;
#define REFGUID const GUID &
#define REFIID const IID &
#define REFCLSID const CLSID &

inline int IsEqualGUID(REFGUID left, REFGUID right)
{
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}
inline int InlineIsEqualGUID(REFGUID left, REFGUID right)
{
    return IsEqualGUID(left, right);
}
inline int IsEqualIID(REFIID left, REFIID right)
{
    return IsEqualGUID(left, right);
}
inline int IsEqualCLSID(REFCLSID left, REFCLSID right)
{
    return IsEqualGUID(left, right);
}
inline bool operator==(REFGUID left, REFGUID right)
{
    return IsEqualGUID(left, right) != 0;
}
inline bool operator!=(REFGUID left, REFGUID right)
{
    return IsEqualGUID(left, right) == 0;
}

/// Holds the identifier that __CRT_UUID_DECL gives a type.
template<typename T>
struct __mingw_uuidof_s;

template<typename T>
constexpr const GUID &__mingw_uuidof()
{
    using Type = std::remove_cv_t<std::remove_pointer_t<std::remove_cv_t<std::remove_reference_t<T>>>>;
    return __mingw_uuidof_s<Type>::__uuid_inst;
}

/// Gives a type, which may be incomplete, its identifier. Stands at global scope.
#define __CRT_UUID_DECL(type, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)                                               \
    template<>                                                                                                         \
    struct __mingw_uuidof_s<type>                                                                                      \
    {                                                                                                                  \
        static constexpr IID __uuid_inst = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}};                              \
    };

/// The identifier of a type, or of what an expression of pointer type points to.
#define __uuidof(type) __mingw_uuidof<__typeof(type)>()

#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)                                                   \
    inline constexpr GUID name = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}

DEFINE_GUID(GUID_NULL, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
inline constexpr const GUID &IID_NULL = GUID_NULL;
inline constexpr const GUID &CLSID_NULL = GUID_NULL;

/// Writes "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" with its NUL. Returns 39, the characters written, or 0 when `size`
/// (in characters) is too small.
QUIRE_PLATFORM_EXPORT int StringFromGUID2(REFGUID guid, LPOLESTR text, int size);
