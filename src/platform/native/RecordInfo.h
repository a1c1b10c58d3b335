#pragma once

/// \file
/// IRecordInfo: how the records of an array or a variant are made, copied and freed.

#include <quire/platform/native/Dispatch.h>

struct QUIRE_PLATFORM_EXPORT IRecordInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE RecordInit(PVOID record) = 0;
    virtual HRESULT STDMETHODCALLTYPE RecordClear(PVOID record) = 0;
    virtual HRESULT STDMETHODCALLTYPE RecordCopy(PVOID source, PVOID destination) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetGuid(GUID *guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetName(BSTR *name) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSize(ULONG *size) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(ITypeInfo **info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetField(PVOID record, LPCOLESTR field, VARIANT *value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldNoCopy(PVOID record, LPCOLESTR field, VARIANT *value, PVOID *data) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutField(ULONG flags, PVOID record, LPCOLESTR field, VARIANT *value) = 0;
    virtual HRESULT STDMETHODCALLTYPE PutFieldNoCopy(ULONG flags, PVOID record, LPCOLESTR field, VARIANT *value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFieldNames(ULONG *count, BSTR *names) = 0;
    virtual BOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo *info) = 0;
    virtual PVOID STDMETHODCALLTYPE RecordCreate() = 0;
    virtual HRESULT STDMETHODCALLTYPE RecordCreateCopy(PVOID source, PVOID *destination) = 0;
    virtual HRESULT STDMETHODCALLTYPE RecordDestroy(PVOID record) = 0;
};
typedef IRecordInfo *LPRECORDINFO;

__CRT_UUID_DECL(IRecordInfo, 0x0000002f, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
DEFINE_GUID(IID_IRecordInfo, 0x0000002f, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
