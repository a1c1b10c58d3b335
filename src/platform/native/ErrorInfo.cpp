#include <quire/platform/native/ErrorInfo.h>

#include <quire/platform/Automation.h>
#include <quire/platform/Bstr.h>

#include <atomic>
#include <new>

namespace {

/// What CreateErrorInfo makes: written through one interface, read through the other.
class ErrorInformation final : public ICreateErrorInfo, public IErrorInfo
{
public:
    virtual ~ErrorInformation() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void **object) override
    {
        if (!object)
            return E_POINTER;
        if (riid == IID_IUnknown || riid == IID_ICreateErrorInfo)
            *object = static_cast<ICreateErrorInfo *>(this);
        else if (riid == IID_IErrorInfo)
            *object = static_cast<IErrorInfo *>(this);
        else
            *object = nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) override
    {
        m_guid = guid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR source) override { return set(m_source, source); }
    HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR text) override { return set(m_description, text); }
    HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR helpFile) override { return set(m_helpFile, helpFile); }
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) override
    {
        m_helpContext = helpContext;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetGUID(GUID *guid) override
    {
        if (!guid)
            return E_INVALIDARG;
        *guid = m_guid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR *source) override { return give(m_source, source); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR *description) override { return give(m_description, description); }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR *helpFile) override { return give(m_helpFile, helpFile); }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD *helpContext) override
    {
        if (!helpContext)
            return E_INVALIDARG;
        *helpContext = m_helpContext;
        return S_OK;
    }

private:
    static HRESULT set(Platform::Bstr &place, const OLECHAR *text)
    {
        place.reset(SysAllocString(text));
        return text && place.isNull() ? E_OUTOFMEMORY : S_OK;
    }
    static HRESULT give(const Platform::Bstr &text, BSTR *place)
    {
        if (!place)
            return E_INVALIDARG;
        *place = SysAllocString(text.get());
        return text && !*place ? E_OUTOFMEMORY : S_OK;
    }

    std::atomic<ULONG> m_references{1};
    GUID m_guid = GUID_NULL;
    Platform::Bstr m_source;
    Platform::Bstr m_description;
    Platform::Bstr m_helpFile;
    DWORD m_helpContext = 0;
};

/// The calling thread's information; what a thread leaves behind is released when it ends.
IErrorInfoPtr &slot()
{
    thread_local IErrorInfoPtr information;
    return information;
}

} // namespace

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo *info)
{
    if (reserved != 0)
        return E_INVALIDARG;
    slot() = info;
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo **info)
{
    if (reserved != 0 || !info)
        return E_INVALIDARG;
    *info = slot().Detach();
    return *info ? S_OK : S_FALSE;
}

HRESULT CreateErrorInfo(ICreateErrorInfo **info)
{
    if (!info)
        return E_INVALIDARG;
    *info = new (std::nothrow) ErrorInformation;
    return *info ? S_OK : E_OUTOFMEMORY;
}
