#pragma once

#include <quire/platform/Automation.h>

/// Describes records of one number, or what a test says, lies on the test's stack, and counts what an array asks of it.
class CountedRecordInfo final : public IRecordInfo
{
public:
    LONG references = 0;
    int cleared = 0;
    int copied = 0;
    int destroyed = 0;
    ULONG size = sizeof(LONG);
    HRESULT sizeResult = S_OK;
    GUID guid{};
    HRESULT guidResult = E_NOTIMPL;
    bool raisesForGuid = false;
    HRESULT copyResult = S_OK;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void **object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE RecordInit(PVOID) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RecordClear(PVOID) override
    {
        ++cleared;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE RecordCopy(PVOID source, PVOID destination) override
    {
        ++copied;
        *static_cast<LONG *>(destination) = *static_cast<LONG *>(source);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetGuid(GUID *answer) override
    {
        if (raisesForGuid)
            throw _com_error(E_FAIL);
        *answer = guid;
        return guidResult;
    }
    HRESULT STDMETHODCALLTYPE GetName(BSTR *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSize(ULONG *answer) override
    {
        *answer = size;
        return sizeResult;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(ITypeInfo **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetField(PVOID, LPCOLESTR, VARIANT *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNoCopy(PVOID, LPCOLESTR, VARIANT *, PVOID *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutField(ULONG, PVOID, LPCOLESTR, VARIANT *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutFieldNoCopy(ULONG, PVOID, LPCOLESTR, VARIANT *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNames(ULONG *, BSTR *) override { return E_NOTIMPL; }
    BOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo *info) override { return info == this; }
    PVOID STDMETHODCALLTYPE RecordCreate() override { return nullptr; }
    HRESULT STDMETHODCALLTYPE RecordCreateCopy(PVOID source, PVOID *copy) override
    {
        if (FAILED(copyResult))
            return copyResult;
        *copy = CoTaskMemAlloc(sizeof(LONG));
        return RecordCopy(source, *copy);
    }
    HRESULT STDMETHODCALLTYPE RecordDestroy(PVOID record) override
    {
        ++destroyed;
        CoTaskMemFree(record);
        return S_OK;
    }
};
