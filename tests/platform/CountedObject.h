#pragma once

#include <quire/platform/Automation.h>

#include <atomic>

/// An object with two interfaces that tells how often it is referenced. Its owner is the test, whose own reference is
/// not counted: with no pointer to it, `references` is 0.
class CountedObject : public ISupportErrorInfo, public IConnectionPointContainer
{
public:
    virtual ~CountedObject() = default;

    std::atomic<LONG> references{0};
    /// How often either count was changed.
    std::atomic<LONG> changes{0};
    /// What it answers to everybody who asks for a connection point container.
    HRESULT containerResult = S_OK;
    HRESULT supportResult = S_OK;

    ISupportErrorInfo *support() { return this; }
    IConnectionPointContainer *container() { return this; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override
    {
        *object = nullptr;
        HRESULT result = S_OK;
        if (iid == __uuidof(IUnknown) || iid == __uuidof(ISupportErrorInfo))
            *object = support();
        else if (iid != __uuidof(IConnectionPointContainer))
            result = E_NOINTERFACE;
        else if (SUCCEEDED(containerResult))
            *object = container();
        else
            result = containerResult;
        if (*object)
            AddRef();
        return result;
    }
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        ++changes;
        return static_cast<ULONG>(++references);
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        ++changes;
        return static_cast<ULONG>(--references);
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) override { return supportResult; }

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID, IConnectionPoint **) override { return E_NOTIMPL; }
};
