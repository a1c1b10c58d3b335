#pragma once

/// \file
/// What calls to the server's objects have in common. Not part of the public surface.

#include <new>

#include <quire/platform/Automation.h>
#include <quire/platform/Variant.h>

namespace Quire {

/// Raises \a result, which \a object has answered, as `_com_error` with the server's error information if it is a
/// failure.
template<typename Pointer>
void check(HRESULT result, const Pointer &object)
{
    if (FAILED(result))
        _com_issue_errorex(result, object, Pointer::GetIID());
}

/// The exception that is being handled as an HRESULT, which is a failure: the server's own, E_OUTOFMEMORY for memory
/// that ran out, else E_FAIL.
inline HRESULT currentFailure()
try {
    throw;
} catch (const _com_error &failure) {
    return FAILED(failure.Error()) ? failure.Error() : E_FAIL;
} catch (const std::bad_alloc &) {
    return E_OUTOFMEMORY;
} catch (...) {
    return E_FAIL;
}

/// The entry number \a index of a directory or queue, empty when the server gives none. Raises what the server refuses.
template<typename Pointer>
IDispatchPtr itemAt(const Pointer &parent, int index)
{
    Platform::Variant item;
    const HRESULT result = parent->get_Item(Platform::Variant(LONG{index}).get(), item.out());
    if (result == E_NOINTERFACE)
        return {};
    check(result, parent);
    return item.toDispatch();
}

} // namespace Quire
