#pragma once

#include <quire/platform/Automation.h>

namespace Newsroom {

// Calling by name, as script hosts do, through the type library: the one in the resources of the module that this code
// is part of, otherwise the one registered with the system. Where neither is, as everywhere but on Windows, objects
// have no type information and no names. Any thread may call.

/// Whether objects of that interface can be called by name.
bool canBindLate(REFIID iid);

/// The members of an interface; E_NOTIMPL when it cannot be called by name.
HRESULT lateTypeInfo(REFIID iid, ITypeInfo **info);

/// The identifiers of a member and of its arguments by their names, as IDispatch::GetIDsOfNames answers.
HRESULT lateNames(REFIID iid, LPOLESTR *names, UINT count, DISPID *ids);

/// A call of a member of `object`, an object of that interface, as IDispatch::Invoke answers. A refusal of the member
/// comes back as DISP_E_EXCEPTION with its error information.
HRESULT lateInvoke(REFIID iid, void *object, DISPID member, WORD flags, DISPPARAMS *parameters, VARIANT *result,
                   EXCEPINFO *exception, UINT *wrongArgument);

} // namespace Newsroom
