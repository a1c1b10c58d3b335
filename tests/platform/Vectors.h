#pragma once

#include <gtest/gtest.h>

#include <quire/platform/SafeArray.h>

/// A new vector.
inline Platform::SafeArray vectorOf(VARTYPE type, ULONG count, LONG lower = 0)
{
    return Platform::SafeArray(SafeArrayCreateVector(type, lower, count));
}

/// What the elements are.
inline VARTYPE typeOf(const Platform::SafeArray &array)
{
    VARTYPE type = VT_ILLEGAL;
    EXPECT_EQ(SafeArrayGetVartype(array.get(), &type), S_OK);
    return type;
}
