#include "notify/HitArray.h"

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

namespace {

BSTR ownText(const QString &value)
{
    return value.isNull() ? nullptr : Platform::toBstr(value);
}

SAFEARRAY *fieldArray(const QVector<QPair<QString, QString>> &fields)
{
    if (fields.isEmpty())
        return nullptr;
    SAFEARRAY *const array = makePlainArray(sizeof(Orvex::FieldValue), static_cast<ULONG>(fields.size()));
    const Platform::SafeArrayAccess access(array);
    auto *record = access.as<Orvex::FieldValue>();
    for (int i = 0; record && i < fields.size(); ++i)
        record[i] = {ownText(fields[i].first), ownText(fields[i].second)};
    return array;
}

void freeFields(SAFEARRAY *array)
{
    {
        const Platform::SafeArrayAccess access(array);
        auto *record = access.as<Orvex::FieldValue>();
        const bool isOurs = array && array->cbElements == sizeof(Orvex::FieldValue) && array->cDims == 1;
        for (ULONG i = 0; isOurs && i < access.size(); ++i, ++record) {
            SysFreeString(record->name);
            SysFreeString(record->value);
        }
    }
    SafeArrayDestroy(array);
}

} // namespace

SAFEARRAY *makePlainArray(ULONG elementSize, ULONG count, LONG lowerBound)
{
    SAFEARRAY *array = nullptr;
    if (FAILED(SafeArrayAllocDescriptor(1, &array)))
        return nullptr;
    array->cbElements = elementSize;
    array->rgsabound[0] = {count, lowerBound};
    SafeArrayAllocData(array);
    return array;
}

HitArray::HitArray(const QVector<Hit> &hits)
    : m_array(makePlainArray(sizeof(Orvex::SearchHit), static_cast<ULONG>(hits.size())))
{
    const Platform::SafeArrayAccess access(m_array);
    auto *record = access.as<Orvex::SearchHit>();
    for (int i = 0; record && i < hits.size(); ++i)
        record[i] = {ownText(hits[i].name), ownText(hits[i].queue), hits[i].id, fieldArray(hits[i].fields)};
}

HitArray::~HitArray()
{
    const ULONG size = Platform::elementCount(m_array);
    for (ULONG i = 0; i < size; ++i) {
        Orvex::SearchHit &hit = (*this)[static_cast<int>(i)];
        SysFreeString(hit.name);
        SysFreeString(hit.queuePath);
        freeFields(hit.fields);
    }
    SafeArrayDestroy(m_array);
}

Orvex::SearchHit &HitArray::operator[](int index)
{
    return static_cast<Orvex::SearchHit *>(m_array->pvData)[index];
}
