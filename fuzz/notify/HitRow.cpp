#include "HitRow.h"

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/tree/AttributeKeys.h>

#include "tests/notify/HitArray.h"

namespace NotifyFuzz {

namespace {

BSTR takeText(Fuzz::Input &input, QString *text)
{
    *text = input.text();
    return text->isNull() ? nullptr : Platform::toBstr(*text);
}

} // namespace

Quire::Item itemOf(const QString &name, const QString &queue, const Orvex::StoryIdentifier &id)
{
    Quire::Item item(name, Quire::Item_SearchHit);
    const QString text = QString::number(id.part1) + QLatin1Char(':') + QString::number(id.part2);
    item.sortKey = queue + QLatin1Char(':') + text;
    item.AddAttr(QLatin1String(Quire::Attr_Queue), queue);
    item.AddAttr(QLatin1String(Quire::Attr_Storyid), text);
    return item;
}

HitRow::HitRow(Fuzz::Input &input, IDispatch *object)
    : m_size(input.byte() % 5u)
{
    const LONG lowerBound = input.number();
    m_array = makePlainArray(sizeof(Orvex::SearchHit), m_size, lowerBound);
    const Platform::SafeArrayAccess access(m_array);
    auto *const hits = access.as<Orvex::SearchHit>();
    for (ULONG i = 0; hits && i < m_size; ++i)
        fill(input, hits + i, object);
}

HitRow::~HitRow()
{
    for (ULONG i = 0; m_array && m_array->pvData && i < m_size; ++i) {
        const Orvex::SearchHit &hit = static_cast<const Orvex::SearchHit *>(m_array->pvData)[i];
        SysFreeString(hit.name);
        SysFreeString(hit.queuePath);
    }
    for (SAFEARRAY *fields : m_fields) {
        for (ULONG i = 0; fields->pvData && i < fields->rgsabound[0].cElements; ++i) {
            const Orvex::FieldValue &field = static_cast<const Orvex::FieldValue *>(fields->pvData)[i];
            SysFreeString(field.name);
            SysFreeString(field.value);
        }
        SafeArrayDestroy(fields);
    }
    SafeArrayDestroy(m_array);
}

void HitRow::fill(Fuzz::Input &input, Orvex::SearchHit *hit, IDispatch *object)
{
    QString name;
    QString queue;
    hit->name = takeText(input, &name);
    hit->queuePath = takeText(input, &queue);
    hit->id = {input.number(), input.number(), input.number()};
    Quire::Item item = itemOf(name, queue, hit->id);
    if (input.below(2) == 0) {
        putFields(input, hit, &item);
    } else {
        m_strange.push_back(std::make_unique<Fuzz::StrangeArray>(input, object, true));
        hit->fields = m_strange.back()->get(); // empty records at best, which are fields without a value
    }
    m_expected.push_back(item);
}

void HitRow::putFields(Fuzz::Input &input, Orvex::SearchHit *hit, Quire::Item *item)
{
    const ULONG count = input.byte() % 4u;
    hit->fields = makePlainArray(sizeof(Orvex::FieldValue), count, input.number());
    if (!hit->fields)
        return;
    m_fields.push_back(hit->fields);
    const Platform::SafeArrayAccess access(hit->fields);
    auto *const fields = access.as<Orvex::FieldValue>();
    for (ULONG i = 0; fields && i < count; ++i) {
        QString name;
        QString value;
        fields[i] = {takeText(input, &name), takeText(input, &value)};
        if (!value.isEmpty())
            item->AddAttr(name, value);
    }
}

} // namespace NotifyFuzz
