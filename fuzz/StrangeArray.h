#pragma once

/// \file
/// Arrays as no decent server sends them.

#include <quire/platform/Automation.h>

#include "Input.h"

namespace Fuzz {

/// An array of any type, dimensions, bounds and size of elements, with or without memory for them, as an input says.
/// Owns it.
class StrangeArray
{
public:
    /// Some elements that can hold an object are \a object, which outlives the array. With \a lying the array may say
    /// another size of its elements than they have, until it is destroyed.
    StrangeArray(Input &input, IDispatch *object, bool lying);
    ~StrangeArray();
    StrangeArray(const StrangeArray &) = delete;
    StrangeArray &operator=(const StrangeArray &) = delete;

    /// Null when the system does not make such an array.
    SAFEARRAY *get() const { return m_array; }
    /// Hands the array over; of one that does not lie only.
    SAFEARRAY *release();

    /// Hands the array out in \a value as a server may: as an array of objects whatever it is, itself or by reference,
    /// as a reference to nothing, or as a number. It stays this one's, and \a value is not to be cleared.
    void handOut(Input &input, VARIANT *value);

    /// As made: VT_EMPTY for one that does not say what it holds.
    VARTYPE type() const { return m_type; }
    /// As the array says.
    ULONG elementSize() const;
    /// One dimension with memory for as many elements as it says.
    bool isPlainRow() const { return m_array && m_array->cDims == 1 && m_array->pvData; }
    /// The elements of the first dimension.
    ULONG size() const { return m_array ? m_array->rgsabound[m_array->cDims - 1].cElements : 0; }

private:
    SAFEARRAY *makeTyped(Input &input);
    SAFEARRAY *makeUntyped(Input &input);
    void fill(Input &input, IDispatch *object);
    void fillElement(Input &input, IDispatch *object, void *element);

    VARTYPE m_type = VT_EMPTY;
    SAFEARRAY *m_array = nullptr;
    ULONG m_elementSize = 0;
};

} // namespace Fuzz
