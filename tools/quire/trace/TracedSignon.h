#pragma once

#include "trace/TracedObject.h"

namespace Tool {

/// The sign-on object whose calls are recorded, and those of everything that it leads to.
class TracedSignon final : public TracedDispatch<Orvex::ISignon4>
{
public:
    using TracedDispatch::TracedDispatch;

    STDMETHODIMP QueryInterface(REFIID iid, void **object) override;

    STDMETHODIMP Reserved1() override;
    STDMETHODIMP Disconnect() override;
    STDMETHODIMP get_Connected(VARIANT_BOOL *connected) override;
    STDMETHODIMP Reserved4() override;
    STDMETHODIMP Reserved5() override;
    STDMETHODIMP GetDirectory(BSTR path, IDispatch **directory) override;
    STDMETHODIMP Search(BSTR query, LONG *searchId) override;
    STDMETHODIMP StopSearch(LONG searchId) override;
    STDMETHODIMP GetStory(BSTR queuePath, LONG number, LONG zero1, LONG zero2, IDispatch **story) override;
    STDMETHODIMP DeleteStory(BSTR queuePath, LONG part1, LONG part2, LONG part3) override;
    STDMETHODIMP LoadBlob(BSTR name, SAFEARRAY **data, LONG *value) override;
    STDMETHODIMP SaveBlob(BSTR name, SAFEARRAY *data, LONG *value) override;
    STDMETHODIMP DeleteBlob(BSTR name) override;
    STDMETHODIMP GetSystemForm(BSTR name, BSTR *form) override;
    STDMETHODIMP Reserved15() override;
    STDMETHODIMP get_ServerName(BSTR *name) override;
    STDMETHODIMP GetUserInfo(BSTR *text1, BSTR *text2, BSTR *text3, BSTR *text4, LONG *number1, LONG *number2) override;
    STDMETHODIMP LoadUserBlob(SAFEARRAY **data, LONG *value) override;
    STDMETHODIMP SaveUserBlob(SAFEARRAY *data, LONG *value) override;
    STDMETHODIMP get_SysReadRate(LONG *rate) override;
    STDMETHODIMP get_SysWordLength(LONG *length) override;
    STDMETHODIMP Connect(BSTR user, BSTR password, BSTR server, LONG option) override;
};

} // namespace Tool
