#include "failing/StrangeArrays.h"

#include <limits>

namespace Failing {

namespace {

const LONG lastLong = std::numeric_limits<LONG>::max();
const LONG firstLong = std::numeric_limits<LONG>::min();

template<VARTYPE Type, ULONG Count, LONG LowerBound>
SAFEARRAY *row()
{
    return SafeArrayCreateVector(Type, LowerBound, Count);
}

template<VARTYPE Type>
SAFEARRAY *square()
{
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    return SafeArrayCreate(Type, 2, bounds);
}

/// A descriptor that says how many elements there are, without any.
template<VARTYPE Type, ULONG Count>
SAFEARRAY *promise()
{
    SAFEARRAY *const array = SafeArrayCreateVector(Type, 0, 0);
    SafeArrayDestroyData(array);
    array->pvData = nullptr;
    array->rgsabound[0].cElements = Count;
    return array;
}

/// Elements that are said to be smaller than their type is.
SAFEARRAY *crumbs()
{
    SAFEARRAY *const array = SafeArrayCreateVector(VT_DISPATCH, 0, 3);
    array->cbElements = 1;
    return array;
}

SAFEARRAY *none()
{
    return nullptr;
}

} // namespace

const std::vector<StrangeArray> &strangeArrays()
{
    static const std::vector<StrangeArray> all{
        {"no array", none, 0, 0, 0},
        {"no bytes", row<VT_UI1, 0, 0>, 0, 0, 0},
        {"bytes from below zero", row<VT_UI1, 3, -5>, 3, 0, 0},
        {"bytes from the first number on", row<VT_UI1, 3, firstLong>, 3, 0, 0},
        {"bytes up to the last number", row<VT_UI1, 3, lastLong - 2>, 3, 0, 0},
        {"bytes beyond the last number", row<VT_UI1, 3, lastLong>, 3, 0, 0},
        {"signed bytes", row<VT_I1, 3, 0>, 3, 0, 0},
        {"numbers", row<VT_I4, 3, 0>, 0, 0, 0},
        {"large numbers", row<VT_I8, 3, 0>, 0, 0, 0},
        {"texts", row<VT_BSTR, 3, 0>, 0, 0, 0},
        {"two dimensions of bytes", square<VT_UI1>, 0, 0, 0},
        {"two dimensions of objects", square<VT_DISPATCH>, 0, 0, 0},
        {"bytes that are not there", promise<VT_UI1, 1000>, 0, 0, 0},
        {"bytes beyond all memory that are not there", promise<VT_UI1, 0xFFFFFFFF>, 0, 0, 0},
        {"objects that are not there", promise<VT_DISPATCH, 3>, 0, 0, 0},
        {"objects beyond all memory that are not there", promise<VT_UNKNOWN, 0xFFFFFFFF>, 0, 0, 0},
        {"values that are not there", promise<VT_VARIANT, 1000>, 0, 0, 0},
        {"no objects", row<VT_DISPATCH, 0, 0>, 0, 0, 0},
        {"null objects", row<VT_DISPATCH, 3, 0>, 0, 3, 0},
        {"null objects from the first number on", row<VT_UNKNOWN, 3, firstLong>, 0, 3, 0},
        {"null objects up to the last number", row<VT_UNKNOWN, 3, lastLong - 2>, 0, 3, 0},
        {"empty values", row<VT_VARIANT, 3, 0>, 0, 3, 0},
        {"objects of one byte", crumbs, 3, 0, 0},
    };
    return all;
}

} // namespace Failing
