#pragma once

/// \file
/// What calls to the server's objects have in common. Not part of the public surface.

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
