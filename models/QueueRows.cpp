#include "QueueRows.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include "ServerThread.h"
#include "WatchedQueue.h"
#include <quire/session/StoryID.h>
#include <quire/tree/ListMutexLocker.h>

namespace Quire {

namespace {

void mix(quint64 &digest, const QString &text)
{
    const std::u16string_view units(reinterpret_cast<const char16_t *>(text.utf16()),
                                    static_cast<std::size_t>(text.size()));
    digest ^= std::hash<std::u16string_view>()(units) + 0x9e3779b97f4a7c15u + (digest << 6u) + (digest >> 2u);
}

StoryMark markOf(const Item &item)
{
    StoryMark mark;
    mix(mark.content, item.name);
    for (const Attribute &attribute : item.attributes) {
        mix(mark.content, attribute.name);
        mix(mark.content, attribute.value);
        if (attribute.name == QLatin1String(Attr_Storyid))
            mark.key = storyKey(attribute.value);
    }
    return mark;
}

std::vector<quint64> markKeys(const std::vector<StoryMark> &marks)
{
    std::vector<quint64> keys;
    keys.reserve(marks.size());
    for (const StoryMark &mark : marks)
        keys.push_back(mark.key);
    return keys;
}

template<typename Value>
void moveWithin(std::vector<Value> &values, const RowStep &step)
{
    const auto first = values.begin() + step.first;
    if (step.to > step.first)
        std::rotate(first, first + step.count, values.begin() + step.to);
    else
        std::rotate(values.begin() + step.to, first, first + step.count);
}

} // namespace

quint64 storyKey(const QString &identifier)
{
    StoryID id{};
    String2StoryID(identifier, &id, 10);
    return quint64{static_cast<quint32>(id.part1)} << 32u | static_cast<quint32>(id.part2);
}

int QueueRows::find(quint64 key) const
{
    const auto found =
        std::find_if(m_marks.begin(), m_marks.end(), [&](const StoryMark &mark) { return mark.key == key; });
    return found == m_marks.end() ? -1 : static_cast<int>(found - m_marks.begin());
}

Item *QueueRows::item(WatchedQueue &queue, int row) const
{
    if (!m_old)
        return queue.u_Nth(row);
    const int place = m_old->places[static_cast<std::size_t>(row)];
    return place < 0 ? queue.u_Nth(-1 - place) : &m_old->items[static_cast<std::size_t>(place)];
}

int QueueRows::arrived(WatchedQueue &queue) const
{
    return queue.u_Size() - (m_old ? newSize() : size());
}

void QueueRows::add(WatchedQueue &queue, int count)
{
    std::vector<StoryMark> &marks = m_old ? m_new : m_marks;
    const ListMutexLocker lock("QueueModel::poll()", queue.mutex());
    for (int added = 0; added < count; ++added)
        marks.push_back(markOf(*queue.u_Nth(static_cast<int>(marks.size()))));
}

void QueueRows::keepOld(WatchedQueue &queue)
{
    m_new.clear();
    if (m_old)
        return;
    auto old = std::make_unique<Old>();
    old->items.reserve(m_marks.size());
    old->places.reserve(m_marks.size());
    const ListMutexLocker lock("QueueModel::refresh()", queue.mutex());
    for (int row = 0; row < size(); ++row) {
        old->items.push_back(std::move(*queue.u_Nth(row)));
        old->places.push_back(row);
    }
    m_old = ServerThread::own(std::move(old));
}

std::vector<RowStep> QueueRows::steps() const
{
    return rowSteps(matchRows(markKeys(m_marks), markKeys(m_new)), newSize());
}

void QueueRows::apply(const RowStep &step)
{
    const auto place = m_old->places.begin() + step.first;
    const auto mark = m_marks.begin() + step.first;
    switch (step.kind) {
    case RowStep::Remove:
        m_old->places.erase(place, place + step.count);
        m_marks.erase(mark, mark + step.count);
        break;
    case RowStep::Insert: {
        const auto arrived = m_new.begin() + step.source;
        m_marks.insert(mark, arrived, arrived + step.count);
        const auto inserted = m_old->places.insert(place, static_cast<std::size_t>(step.count), 0);
        for (int index = 0; index < step.count; ++index)
            // cppcheck-suppress unreadVariable; it is an iterator into the places
            inserted[index] = -1 - (step.source + index);
        break;
    }
    case RowStep::Move:
        moveWithin(m_old->places, step);
        moveWithin(m_marks, step);
        break;
    }
}

std::vector<int> QueueRows::showNew()
{
    std::vector<int> changed;
    for (int row = 0; row < size(); ++row) {
        if (mark(row).content != m_new[static_cast<std::size_t>(row)].content)
            changed.push_back(row);
    }
    m_marks = std::move(m_new);
    m_new.clear();
    m_old.reset();
    return changed;
}

void QueueRows::clear()
{
    m_marks.clear();
    m_new.clear();
    m_old.reset();
}

} // namespace Quire
