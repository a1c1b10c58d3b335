#pragma once

#include "trace/TracedObject.h"

namespace Tool {

/// A directory whose calls are recorded, and those of its entries.
class TracedDirectory final : public TracedDispatch<Orvex::IDirectory2>
{
public:
    using TracedDispatch::TracedDispatch;

    STDMETHODIMP get_Item(VARIANT index, VARIANT *item) override;
    STDMETHODIMP get_Count(LONG *count) override;
    STDMETHODIMP GetList(LONG first, LONG count, VARIANT *list) override;
    STDMETHODIMP get_Name(BSTR *name) override;
    STDMETHODIMP get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override;
};

} // namespace Tool
