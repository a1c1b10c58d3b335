#pragma once

#include <vector>

#include <quire/newsroom/server/ComObject.h>
#include <quire/platform/SafeArray.h>

namespace Newsroom {

/// Describes the server's records to the automation system, so that arrays of them can be made, copied and destroyed
/// with everything in them.
///
/// Describing single fields is left to a type library: GetField, PutField and their like answer E_NOTIMPL. The
/// automation system makes these calls on its own account, so they are neither recorded nor counted.
class RecordInfo final : public ComObject<IRecordInfo, IRecordInfo>
{
public:
    /// One kind of record. Its members are texts and arrays, which it owns, and plain numbers.
    struct Layout
    {
        const GUID &guid;
        const OLECHAR *name;
        std::size_t size;
        std::vector<std::size_t> texts;  ///< offsets of BSTRs
        std::vector<std::size_t> arrays; ///< offsets of SAFEARRAY pointers
        std::vector<const OLECHAR *> fields;
    };

    /// Orvex::SearchHit and Orvex::FieldValue.
    static const Layout &searchHit();
    static const Layout &fieldValue();

    /// An array of that many empty records, lower bound 0. Throws std::bad_alloc.
    static Platform::SafeArray makeArray(const std::shared_ptr<ServerCore> &core, const Layout &layout, ULONG count);

    RecordInfo(const std::shared_ptr<ServerCore> &core, const Layout &layout);

    STDMETHODIMP RecordInit(PVOID record) override;
    STDMETHODIMP RecordClear(PVOID record) override;
    STDMETHODIMP RecordCopy(PVOID from, PVOID to) override;
    STDMETHODIMP GetGuid(GUID *guid) override;
    STDMETHODIMP GetName(BSTR *name) override;
    STDMETHODIMP GetSize(ULONG *size) override;
    STDMETHODIMP GetTypeInfo(ITypeInfo **info) override;
    STDMETHODIMP GetField(PVOID record, LPCOLESTR field, VARIANT *value) override;
    STDMETHODIMP GetFieldNoCopy(PVOID record, LPCOLESTR field, VARIANT *value, PVOID *data) override;
    STDMETHODIMP PutField(ULONG flags, PVOID record, LPCOLESTR field, VARIANT *value) override;
    STDMETHODIMP PutFieldNoCopy(ULONG flags, PVOID record, LPCOLESTR field, VARIANT *value) override;
    STDMETHODIMP GetFieldNames(ULONG *count, BSTR *names) override;
    STDMETHODIMP_(BOOL) IsMatchingType(IRecordInfo *other) override;
    STDMETHODIMP_(PVOID) RecordCreate() override;
    STDMETHODIMP RecordCreateCopy(PVOID from, PVOID *to) override;
    STDMETHODIMP RecordDestroy(PVOID record) override;

private:
    const Layout &m_layout;
};

} // namespace Newsroom
