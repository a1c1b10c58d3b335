#include <quire/newsroom/server/RecordInfo.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include <quire/newsroom/server/Owned.h>
#include <quire/orvex/Orvex.h>

namespace Newsroom {

namespace {

const CallInterface RecordInterface{"IRecordInfo", IID_IRecordInfo};

/// The member of a record at an offset.
template<class Member>
Member &memberAt(PVOID record, std::size_t offset)
{
    return *reinterpret_cast<Member *>(static_cast<char *>(record) + offset);
}

/// False when there is no memory.
bool copyText(BSTR from, BSTR *to)
{
    *to = from ? SysAllocStringLen(from, SysStringLen(from)) : nullptr;
    return *to || !from;
}

} // namespace

// The two are never destroyed: a process may end while records are on their way.

const RecordInfo::Layout &RecordInfo::searchHit()
{
    static const Layout &layout =
        *new const Layout{__uuidof(Orvex::SearchHit),
                          OLESTR("SearchHit"),
                          sizeof(Orvex::SearchHit),
                          {offsetof(Orvex::SearchHit, name), offsetof(Orvex::SearchHit, queuePath)},
                          {offsetof(Orvex::SearchHit, fields)},
                          {OLESTR("name"), OLESTR("queuePath"), OLESTR("id"), OLESTR("fields")}};
    return layout;
}

const RecordInfo::Layout &RecordInfo::fieldValue()
{
    static const Layout &layout =
        *new const Layout{__uuidof(Orvex::FieldValue),
                          OLESTR("FieldValue"),
                          sizeof(Orvex::FieldValue),
                          {offsetof(Orvex::FieldValue, name), offsetof(Orvex::FieldValue, value)},
                          {},
                          {OLESTR("name"), OLESTR("value")}};
    return layout;
}

Platform::SafeArray RecordInfo::makeArray(const std::shared_ptr<ServerCore> &core, const Layout &layout, ULONG count)
{
    const Owned<RecordInfo> info = makeOwned<RecordInfo>(core, layout);
    Platform::SafeArray array(SafeArrayCreateVectorEx(VT_RECORD, 0, count, info.get()));
    if (!array)
        throw std::bad_alloc();
    return array;
}

RecordInfo::RecordInfo(const std::shared_ptr<ServerCore> &core, const Layout &layout)
    : ComObject(core, ObjectKind::RecordInfo, RecordInterface)
    , m_layout(layout)
{}

STDMETHODIMP RecordInfo::RecordInit(PVOID record)
{
    if (!record)
        return E_POINTER;
    std::memset(record, 0, m_layout.size);
    return S_OK;
}

STDMETHODIMP RecordInfo::RecordClear(PVOID record)
{
    if (!record)
        return E_POINTER;
    for (const std::size_t offset : m_layout.texts)
        SysFreeString(std::exchange(memberAt<BSTR>(record, offset), nullptr));
    HRESULT result = S_OK;
    for (const std::size_t offset : m_layout.arrays) {
        SAFEARRAY *&array = memberAt<SAFEARRAY *>(record, offset);
        const HRESULT destroyed = array ? SafeArrayDestroy(array) : S_OK;
        if (SUCCEEDED(destroyed))
            array = nullptr;
        else
            result = destroyed; // somebody still has it locked
    }
    return result;
}

STDMETHODIMP RecordInfo::RecordCopy(PVOID from, PVOID to)
{
    if (!from || !to)
        return E_POINTER;
    if (from == to)
        return S_OK;
    const HRESULT cleared = RecordClear(to);
    if (FAILED(cleared))
        return cleared;
    std::memcpy(to, from, m_layout.size);
    // Until its own copies are there, the new record must not hold what belongs to the old one.
    for (const std::size_t offset : m_layout.texts)
        memberAt<BSTR>(to, offset) = nullptr;
    for (const std::size_t offset : m_layout.arrays)
        memberAt<SAFEARRAY *>(to, offset) = nullptr;

    for (const std::size_t offset : m_layout.texts) {
        if (!copyText(memberAt<BSTR>(from, offset), &memberAt<BSTR>(to, offset)))
            return E_OUTOFMEMORY;
    }
    for (const std::size_t offset : m_layout.arrays) {
        SAFEARRAY *const array = memberAt<SAFEARRAY *>(from, offset);
        const HRESULT copied = array ? SafeArrayCopy(array, &memberAt<SAFEARRAY *>(to, offset)) : S_OK;
        if (FAILED(copied))
            return copied;
    }
    return S_OK;
}

STDMETHODIMP RecordInfo::GetGuid(GUID *guid)
{
    if (!guid)
        return E_POINTER;
    *guid = m_layout.guid;
    return S_OK;
}

STDMETHODIMP RecordInfo::GetName(BSTR *name)
{
    if (!name)
        return E_POINTER;
    *name = SysAllocString(m_layout.name);
    return *name ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP RecordInfo::GetSize(ULONG *size)
{
    if (!size)
        return E_POINTER;
    *size = static_cast<ULONG>(m_layout.size);
    return S_OK;
}

STDMETHODIMP RecordInfo::GetTypeInfo(ITypeInfo **info)
{
    if (!info)
        return E_POINTER;
    *info = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP RecordInfo::GetField(PVOID, LPCOLESTR, VARIANT *)
{
    return E_NOTIMPL;
}

STDMETHODIMP RecordInfo::GetFieldNoCopy(PVOID, LPCOLESTR, VARIANT *, PVOID *)
{
    return E_NOTIMPL;
}

STDMETHODIMP RecordInfo::PutField(ULONG, PVOID, LPCOLESTR, VARIANT *)
{
    return E_NOTIMPL;
}

STDMETHODIMP RecordInfo::PutFieldNoCopy(ULONG, PVOID, LPCOLESTR, VARIANT *)
{
    return E_NOTIMPL;
}

STDMETHODIMP RecordInfo::GetFieldNames(ULONG *count, BSTR *names)
{
    if (!count)
        return E_POINTER;
    const auto available = static_cast<ULONG>(m_layout.fields.size());
    if (!names) { // asks only how many there are
        *count = available;
        return S_OK;
    }
    *count = std::min(*count, available);
    for (ULONG i = 0; i < *count; ++i)
        names[i] = SysAllocString(m_layout.fields[i]);
    return S_OK;
}

STDMETHODIMP_(BOOL) RecordInfo::IsMatchingType(IRecordInfo *other)
{
    GUID guid = {};
    return other && SUCCEEDED(other->GetGuid(&guid)) && guid == m_layout.guid ? TRUE : FALSE;
}

STDMETHODIMP_(PVOID) RecordInfo::RecordCreate()
{
    PVOID record = CoTaskMemAlloc(m_layout.size);
    if (record)
        RecordInit(record);
    return record;
}

STDMETHODIMP RecordInfo::RecordCreateCopy(PVOID from, PVOID *to)
{
    if (!from || !to)
        return E_POINTER;
    *to = RecordCreate();
    if (!*to)
        return E_OUTOFMEMORY;
    const HRESULT copied = RecordCopy(from, *to);
    if (FAILED(copied))
        RecordDestroy(std::exchange(*to, nullptr));
    return copied;
}

STDMETHODIMP RecordInfo::RecordDestroy(PVOID record)
{
    const HRESULT cleared = RecordClear(record);
    if (SUCCEEDED(cleared))
        CoTaskMemFree(record);
    return cleared;
}

} // namespace Newsroom
