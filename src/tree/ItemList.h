#pragma once

/// \file
/// A list of items that several threads share.

#include <QMutex>
#include <QString>
#include <QtGlobal>

#include <atomic>
#include <memory>
#include <vector>

#include <quire/platform/Export.h>
#include <quire/tree/Item.h>
#include <quire/tree/ListMutexLocker.h>

namespace Quire {

/// The one container through which the host sees what the server has: the entries of a directory, the stories of a
/// queue, the hits of a search.
///
/// Items are kept by value. Any thread may call any operation, also while a queue's worker appends: each operation
/// takes the list's lock for its own duration, but for those that begin with `u_`, for the list's identifier and name,
/// which belong to the thread that made the list. The host may hold the lock across several calls with Lock or tryLock;
/// the operations can then still be called on that thread.
///
/// Pointers to items stay valid until items are added, cleared or sorted. So hold the lock for as long as you use such
/// a pointer, or u_Nth. While holding it, call nothing that calls the server: the server access lock is never
/// taken under the lock of a list.
class QUIRE_EXPORT ItemList
{
public:
    ItemList();
    /// Releases what Lock and tryLock still hold. No thread may be using the list.
    virtual ~ItemList();

    /// Sets the list's number; of search lists, the number of the search.
    virtual void SetID(int id);
    /// The list's number, initially 0.
    virtual int ID();
    /// Sets the list's name: the path of a directory or queue, or the text of a search.
    virtual void SetName(const QString &name);
    /// The list's name, initially empty.
    virtual const QString &Name();

    /// The number of items.
    virtual int Size();
    /// Appends a copy of \a item. Does not set the change flag.
    virtual void Append(const Item &item);
    /// Index of the first item called \a name without regard to letter case, -1 when there is none.
    virtual int Find(const QString &name);
    /// The item at \a index, null when there is none.
    virtual Item *Nth(int index);
    /// Index of the first item whose first attribute called \a name has exactly the value \a value, -1 when there is
    /// none.
    virtual int FindByAttribute(const QString &name, const QString &value);
    /// Destroys all items. Does not set the change flag.
    virtual void Clear();
    /// Sorts the items by sort key and drops those whose key equals that of an earlier item. Does not set the change
    /// flag. Only search hits have keys: any other list whose keys the host has not set is left with its first item.
    virtual void SortUnique();
    /// As Size, without taking the lock: the number at this moment when another thread adds items.
    virtual int u_Size();
    /// As Nth, without taking the lock.
    virtual Item *u_Nth(int index) QUIRE_NO_THREAD_SAFETY_ANALYSIS; // the caller holds the lock
    /// Whether the list has changed since the flag was last cleared; with \a reset clears it. True for a new list.
    virtual bool HasChanged(bool reset);
    /// Sets the change flag.
    virtual void SetChanged();

    /// Takes the lock until Unlock, waiting as long as that takes. It does not nest: after a second Lock on the same
    /// thread one Unlock leaves the list locked, until it is destroyed.
    void Lock();
    /// Takes the lock until Unlock if that is possible at once; also true when the thread holds it already.
    bool tryLock();
    /// Releases what Lock or tryLock took last; nothing happens when that is nothing.
    void Unlock();

protected:
    /// About \a count items are going to be appended: room for them is made at once when it is needed. Needs no lock.
    void u_Expect(int count) { m_expected = count; }
    /// Moves \a item to the end. Under the caller's lock.
    void u_Append(Item &&item) QUIRE_NO_THREAD_SAFETY_ANALYSIS; // as above; a load knows the mutex as its own
    /// Sets the change flag. Needs no lock.
    void u_SetChanged() { m_changed = true; }
    /// The list's lock, for a ListMutexLocker of a derived class.
    const std::shared_ptr<ListMutex> &listMutex() const { return m_mutex; }

private:
    Q_DISABLE_COPY(ItemList)

    void hold(std::unique_ptr<ListMutexLocker> locker) QUIRE_NO_THREAD_SAFETY_ANALYSIS; // the locker has the mutex

    const std::shared_ptr<ListMutex> m_mutex =
        std::make_shared<ListMutex>();                    // shared with workers that outlive the list
    std::atomic<ListMutexLocker *> m_heldLocker{nullptr}; // owned; written only by who holds the mutex
    qint32 m_id = 0;
    QString m_name;
    std::vector<Item> m_items QUIRE_GUARDED_BY(*m_mutex);
    std::atomic<int> m_size{0}; // of m_items; written under m_mutex
    std::atomic<int> m_expected{0};
    std::atomic<bool> m_changed{true};
    std::vector<std::unique_ptr<ListMutexLocker>> m_forgottenLockers QUIRE_GUARDED_BY(*m_mutex);
};

} // namespace Quire
