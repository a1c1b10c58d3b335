#pragma once

#include <quire/platform/Automation.h>

namespace Newsroom {

/// Reads a position out of a VARIANT: VT_I4, VT_INT, VT_I2 or VT_UI4, also by reference, also in a VARIANT referred to.
/// DISP_E_TYPEMISMATCH for any other type, E_INVALIDARG for a negative number or a null reference. A number that is too
/// large for a position becomes the largest one, which is past every end.
HRESULT readIndex(const VARIANT &value, LONG *index);

} // namespace Newsroom
