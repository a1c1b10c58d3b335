#pragma once

#include "trace/TracedObject.h"

namespace Tool {

/// A class object that makes sign-on objects whose calls are recorded.
class TracedFactory final : public TracedUnknown<IClassFactory>
{
public:
    using TracedUnknown::TracedUnknown;

    STDMETHODIMP CreateInstance(IUnknown *outer, REFIID iid, void **object) override;
    STDMETHODIMP LockServer(BOOL lock) override;
};

} // namespace Tool
