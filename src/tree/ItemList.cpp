#include <quire/tree/ItemList.h>

#include <algorithm>
#include <utility>

#include <quire/tree/ListMutexLocker.h>

namespace Quire {

namespace {

/// What SortUnique sorts in place of an item: an item is several times as large, and its key is elsewhere.
class Place
{
public:
    Place(const QString &key, std::size_t index)
        : m_key(key.constData())
        , m_size(key.size())
        , m_index(static_cast<quint32>(index)) // a list's size is an int
    {}

    std::size_t index() const { return m_index; }
    bool operator<(const Place &other) const { return key() < other.key(); }
    bool operator==(const Place &other) const { return key() == other.key(); }

private:
    QStringView key() const { return QStringView(m_key, m_size); }

    const QChar *m_key;
    qint32 m_size;
    quint32 m_index;
};

/// The places of the first item of each key, in the order of keys.
std::vector<Place> sortedPlaces(const std::vector<Item> &items)
{
    std::vector<Place> places;
    places.reserve(items.size());
    for (const Item &item : items)
        places.emplace_back(item.sortKey, places.size());
    std::stable_sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

} // namespace

ItemList::ItemList() = default;

ItemList::~ItemList()
{
    Unlock();
    m_forgottenLockers.clear(); // one of them may own the mutex, which goes after this
}

void ItemList::SetID(int id)
{
    m_id = id;
}

int ItemList::ID()
{
    return m_id;
}

void ItemList::SetName(const QString &name)
{
    m_name = name;
}

const QString &ItemList::Name()
{
    return m_name;
}

int ItemList::Size()
{
    const ListMutexLocker lock("ItemList::Size()", m_mutex.get());
    return static_cast<int>(m_items.size());
}

void ItemList::Append(const Item &item)
{
    const ListMutexLocker lock("ItemList::Append()", m_mutex.get());
    if (m_items.size() == m_items.capacity())
        return ItemList::u_Append(Item(item)); // copied first: it may be one of those that move
    m_items.push_back(item);
    m_size = static_cast<int>(m_items.size());
}

int ItemList::Find(const QString &name)
{
    const ListMutexLocker lock("ItemList::Find()", m_mutex.get());
    const auto found = std::find_if(m_items.begin(), m_items.end(), [&](const Item &item) {
        return item.name.size() == name.size() && item.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_items.end() ? -1 : static_cast<int>(found - m_items.begin());
}

Item *ItemList::Nth(int index)
{
    const ListMutexLocker lock("ItemList::Nth()", m_mutex.get());
    return ItemList::u_Nth(index);
}

int ItemList::FindByAttribute(const QString &name, const QString &value)
{
    const ListMutexLocker lock("ItemList::FindByAttribute()", m_mutex.get());
    const auto found = std::find_if(m_items.begin(), m_items.end(), [&](const Item &item) {
        const int index = item.FindAttr(name);
        return index >= 0 && item.attributes[static_cast<std::size_t>(index)].value == value;
    });
    return found == m_items.end() ? -1 : static_cast<int>(found - m_items.begin());
}

void ItemList::Clear()
{
    const ListMutexLocker lock("ItemList::Clear()", m_mutex.get());
    m_items.clear();
    m_size = 0;
}

void ItemList::SortUnique()
{
    const ListMutexLocker lock("ItemList::SortUnique()", m_mutex.get());
    const std::vector<Place> places = sortedPlaces(m_items);
    std::vector<Item> sorted;
    sorted.reserve(places.size());
    for (const Place &place : places)
        sorted.push_back(std::move(m_items[place.index()]));
    m_items = std::move(sorted);
    m_size = static_cast<int>(m_items.size());
}

int ItemList::u_Size()
{
    return m_size;
}

Item *ItemList::u_Nth(int index)
{
    const bool exists = index >= 0 && static_cast<std::size_t>(index) < m_items.size();
    return exists ? &m_items[static_cast<std::size_t>(index)] : nullptr;
}

void ItemList::u_Append(Item &&item)
{
    if (m_items.size() == m_items.capacity()) {
        // Lists are long and stay: they grow by less than the half that is usual.
        const std::size_t usual = m_items.size() / 8 + 16;
        m_items.reserve(m_items.size() + std::max(usual, static_cast<std::size_t>(m_expected.exchange(0))));
    }
    m_items.push_back(std::move(item));
    m_size = static_cast<int>(m_items.size());
}

bool ItemList::HasChanged(bool reset)
{
    const ListMutexLocker lock("ItemList::HasChanged()", m_mutex.get());
    return reset ? m_changed.exchange(false) : m_changed.load();
}

void ItemList::SetChanged()
{
    const ListMutexLocker lock("ItemList::SetChanged()", m_mutex.get());
    m_changed = true;
}

// ---- the host's lock ------------------------------------------------------------------------------------------------

void ItemList::Lock()
{
    hold(std::make_unique<ListMutexLocker>("ItemList::Lock()", m_mutex.get()));
}

bool ItemList::tryLock()
{
    auto locker = std::make_unique<ListMutexLocker>("ItemList::tryLock()", m_mutex.get(), true);
    if (!locker->IsLocked())
        return false; // the record of the thread that holds the list stays, or nobody could release it any more
    hold(std::move(locker));
    return true;
}

/// Keeps the record for Unlock, on the thread that holds the mutex. A record that was kept before is out of reach then,
/// and its mutex stays held until the list goes.
void ItemList::hold(std::unique_ptr<ListMutexLocker> locker)
{
    m_forgottenLockers.reserve(m_forgottenLockers.size() + 1);
    std::unique_ptr<ListMutexLocker> before(m_heldLocker.exchange(locker.release()));
    if (before)
        m_forgottenLockers.push_back(std::move(before));
}

void ItemList::Unlock()
{
    // Out of the list first: once the mutex is free another thread keeps its own record there.
    const std::unique_ptr<ListMutexLocker> held(m_heldLocker.exchange(nullptr));
}

} // namespace Quire
