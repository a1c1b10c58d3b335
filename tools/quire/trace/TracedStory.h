#pragma once

#include "trace/TracedObject.h"

namespace Tool {

/// A story whose calls are recorded.
class TracedStory final : public TracedDispatch<Orvex::IStory2>
{
public:
    using TracedDispatch::TracedDispatch;

    STDMETHODIMP get_StoryName(BSTR *name) override;
    STDMETHODIMP get_StoryUnique(BSTR *identifier) override;
    STDMETHODIMP Unlock() override;
    STDMETHODIMP get_FormName(BSTR *name) override;
    STDMETHODIMP get_Field(BSTR name, BSTR *value) override;
    STDMETHODIMP put_Field(BSTR name, BSTR value) override;
    STDMETHODIMP Save(VARIANT_BOOL flag) override;
    STDMETHODIMP IsLocked(LONG lockType, VARIANT_BOOL *locked) override;
    STDMETHODIMP get_Section(LONG section, BSTR *text) override;
    STDMETHODIMP put_Section(LONG section, BSTR text) override;
    STDMETHODIMP get_SectionXml(LONG section, BSTR *text) override;
    STDMETHODIMP put_SectionXml(LONG section, BSTR text) override;
    STDMETHODIMP Lock(LONG lockType, BSTR *holder) override;
};

} // namespace Tool
