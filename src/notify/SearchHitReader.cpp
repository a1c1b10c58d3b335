#include <quire/notify/SearchHitReader.h>

#include <QStringView>

#include <algorithm>

#include <quire/platform/Bstr.h>
#include <quire/platform/PermanentText.h>
#include <quire/session/StoryID.h>

namespace Quire {

namespace {

/// Made once, so that all items share their texts.
struct HitKeys
{
    const QString queue = Platform::permanentText(Attr_Queue);
    const QString storyId = Platform::permanentText(Attr_Storyid);
};

const HitKeys &hitKeys()
{
    static const auto &keys = *new const HitKeys; // never destroyed: the server's threads may outlast main()
    return keys;
}

} // namespace

Item SearchHitReader::read(const Orvex::SearchHit &hit)
{
    Item item(Platform::toQString(hit.name), Item_SearchHit);
    const QString queue = Platform::toQString(hit.queuePath);
    // The same two numbers as in the story items of queues, so that a hit is found there.
    const QString storyId = StoryID2String({hit.id.part1, hit.id.part2, hit.id.part3}, false);
    item.sortKey = queue + QLatin1Char(':') + storyId;

    const HitKeys &keys = hitKeys();
    const RecordArray<Orvex::FieldValue> fields(hit.fields);
    item.attributes.reserve(2 + std::size_t{fields.size()});
    item.AddAttr(keys.queue, queue);
    item.AddAttr(keys.storyId, storyId);
    addFields(fields, item);
    return item;
}

const Orvex::SearchHit *SearchHitReader::readBatch(const Orvex::SearchHit *next, const Orvex::SearchHit *end,
                                                   std::vector<Item> &batch)
try {
    constexpr std::ptrdiff_t largestBatch = 64;
    const auto size = static_cast<std::size_t>(std::min(end - next, largestBatch));
    batch.clear();
    batch.reserve(size);
    while (batch.size() < size)
        batch.push_back(read(*next++));
    return next;
} catch (...) {
    return end; // what was read before counts
}

void SearchHitReader::addFields(const RecordArray<Orvex::FieldValue> &fields, Item &item)
{
    std::size_t position = 0;
    for (const Orvex::FieldValue &field : fields) {
        if (SysStringLen(field.value) != 0)
            item.AddAttr(fieldName(position, field.name), Platform::toQString(field.value));
        ++position;
    }
}

const QString &SearchHitReader::fieldName(std::size_t position, BSTR name)
{
    if (position >= m_fieldNames.size())
        m_fieldNames.resize(position + 1);
    QString &known = m_fieldNames[position];
    if (known != QStringView(reinterpret_cast<const QChar *>(name), static_cast<int>(SysStringLen(name))))
        known = Platform::toQString(name);
    return known;
}

} // namespace Quire
