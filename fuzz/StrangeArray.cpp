#include "StrangeArray.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include <quire/orvex/Orvex.h>

namespace Fuzz {

namespace {

constexpr VARTYPE types[] = {VT_UI1, VT_I1, VT_I2, VT_I4, VT_R8, VT_BSTR, VT_UI4, VT_DISPATCH, VT_UNKNOWN, VT_VARIANT};
constexpr ULONG sizes[] = {1, 2, 4, 8, 16, 24, sizeof(Orvex::FieldValue), sizeof(Orvex::SearchHit), 64, 1000};

constexpr int most = 3; // dimensions

std::array<SAFEARRAYBOUND, most> takeBounds(Input &input)
{
    std::array<SAFEARRAYBOUND, most> bounds{};
    for (SAFEARRAYBOUND &bound : bounds) {
        bound.cElements = input.byte() % 6u;
        bound.lLbound = input.below(2) == 0 ? 0 : input.number();
    }
    return bounds;
}

template<std::size_t count, class Value>
Value pick(Input &input, const Value (&values)[count])
{
    return values[input.byte() % count];
}

} // namespace

StrangeArray::StrangeArray(Input &input, IDispatch *object, bool lying)
    : m_array(input.below(3) == 0 ? makeUntyped(input) : makeTyped(input))
{
    if (!m_array)
        return;
    m_elementSize = m_array->cbElements;
    fill(input, object);
    if (lying && input.below(4) == 0)
        m_array->cbElements = std::min(pick(input, sizes), m_elementSize);
}

StrangeArray::~StrangeArray()
{
    if (m_array)
        m_array->cbElements = m_elementSize;
    SafeArrayDestroy(m_array);
}

SAFEARRAY *StrangeArray::release()
{
    return std::exchange(m_array, nullptr);
}

void StrangeArray::handOut(Input &input, VARIANT *value)
{
    const bool byReference = input.below(2) == 0;
    const VARTYPE type = input.below(8) == 0 ? VT_I4 : VT_ARRAY | VT_DISPATCH;
    value->vt = static_cast<VARTYPE>(type | (byReference ? VT_BYREF : 0));
    if (!byReference)
        value->parray = m_array;
    else
        value->pparray = input.below(8) == 0 ? nullptr : &m_array;
}

ULONG StrangeArray::elementSize() const
{
    return m_array ? m_array->cbElements : 0;
}

SAFEARRAY *StrangeArray::makeTyped(Input &input)
{
    m_type = pick(input, types);
    const auto dimensions = static_cast<UINT>(1 + input.below(8) / 6 + input.below(8) / 6);
    auto bounds = takeBounds(input);
    return SafeArrayCreate(m_type, dimensions, bounds.data());
}

SAFEARRAY *StrangeArray::makeUntyped(Input &input)
{
    const auto dimensions = static_cast<USHORT>(1 + input.below(8) / 6 + input.below(8) / 6);
    SAFEARRAY *array = nullptr;
    if (FAILED(SafeArrayAllocDescriptor(dimensions, &array)))
        return nullptr;
    array->cbElements = pick(input, sizes);
    const auto bounds = takeBounds(input);
    std::copy_n(bounds.begin(), dimensions, array->rgsabound);
    if (input.below(4) != 0)
        SafeArrayAllocData(array);
    return array;
}

/// One dimension only: what the others hold stays zero.
void StrangeArray::fill(Input &input, IDispatch *object)
{
    if (m_type == VT_EMPTY || m_array->cDims != 1 || !m_array->pvData)
        return;
    auto *element = static_cast<BYTE *>(m_array->pvData);
    for (ULONG i = 0; i < m_array->rgsabound[0].cElements; ++i, element += m_elementSize)
        fillElement(input, object, element);
}

void StrangeArray::fillElement(Input &input, IDispatch *object, void *element)
{
    const bool withObject = input.below(2) == 0;
    switch (m_type) {
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (withObject) {
            *static_cast<IDispatch **>(element) = object;
            object->AddRef();
        }
        break;
    case VT_VARIANT:
        if (withObject) {
            auto *value = static_cast<VARIANT *>(element);
            value->vt = input.below(2) == 0 ? VT_DISPATCH : VT_UNKNOWN;
            value->pdispVal = object;
            object->AddRef();
        }
        break;
    case VT_BSTR:
        *static_cast<BSTR *>(element) = SysAllocStringLen(nullptr, input.byte());
        break;
    case VT_UI1:
        *static_cast<BYTE *>(element) = input.byte();
        break;
    default:
        break;
    }
}

} // namespace Fuzz
