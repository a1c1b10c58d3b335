#pragma once

#include "trace/TracedObject.h"

namespace Tool {

/// A queue whose calls are recorded, and those of its stories.
class TracedQueue final : public TracedDispatch<Orvex::IQueue2>
{
public:
    using TracedDispatch::TracedDispatch;

    STDMETHODIMP get_Item(VARIANT index, VARIANT *item) override;
    STDMETHODIMP get_Count(LONG *count) override;
    STDMETHODIMP GetList(LONG first, LONG count, VARIANT *list) override;
    STDMETHODIMP get_Name(BSTR *name) override;
    STDMETHODIMP get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override;
    STDMETHODIMP get_QueueID(Orvex::QueueIdentifier *id) override;
    STDMETHODIMP get_FormName(BSTR *name) override;
    STDMETHODIMP get_Update(VARIANT_BOOL *on) override;
    STDMETHODIMP put_Update(VARIANT_BOOL on) override;
    STDMETHODIMP CreateStory(LONG position, VARIANT *story) override;
    STDMETHODIMP Delete(VARIANT index) override;
    STDMETHODIMP DeleteAll() override;
};

} // namespace Tool
