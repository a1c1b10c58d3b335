#include <quire/session/LockOrder.h>

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>

namespace Quire {

namespace {

const LockRank firstLeaf = LockRank::ActiveLockers;

const std::array<const char *, 21> names{
    "update manager",   "server access",     "searcher",      "item list",   "queue workers",   "update numbers",
    "list holders",     "connect info",      "connections",   "forms",       "handle cache",    "load end",
    "load increment",   "local story path",  "notices",       "queue state", "retired workers", "running workers",
    "searcher's lists", "making a searcher", "workers inside"};
static_assert(names.size() == static_cast<std::size_t>(LockRank::WorkersInside) + 1);

struct Held
{
    LockRank rank{};
    const void *lock = nullptr;
    LockLabel label;
};

/// The locks of one thread, in the order in which they were taken. Without a destructor: locks are taken until the very
/// end of a thread.
struct HeldLocks
{
    std::array<Held, 64> locks;
    std::size_t count = 0;

    Held *begin() { return locks.data(); }
    Held *end() { return locks.data() + count; }
    Held *find(const void *lock)
    {
        return std::find_if(begin(), end(), [lock](const Held &each) { return each.lock == lock; });
    }
};

thread_local HeldLocks heldLocks{};
std::atomic<LockOrder::Handler> brokenHandler{nullptr};

const char *nameOf(LockRank rank)
{
    return names.at(static_cast<std::size_t>(rank));
}

QString textOf(const LockLabel &label)
{
    return label.literal ? QString::fromUtf8(label.literal) : label.text ? *label.text : QString();
}

QString describe(const Held &lock)
{
    const QString name = QString::fromLatin1(nameOf(lock.rank));
    const QString label = textOf(lock.label);
    return label.isEmpty() ? name : QStringLiteral("\"%1\" (%2)").arg(label, name);
}

/// Whether a lock of that rank may be taken by who holds \a held.
bool comesAfter(LockRank rank, const Held &held)
{
    if (held.rank >= firstLeaf)
        return false;
    return rank > held.rank || (rank == LockRank::List && held.rank == LockRank::List);
}

void speakUp(const Held &wanted, const Held &held)
{
    const QString message =
        QStringLiteral("lock order broken: %1 taken under %2").arg(describe(wanted), describe(held));
    if (const LockOrder::Handler handler = brokenHandler) {
        handler(message);
        return;
    }
    qCritical("%s", qUtf8Printable(message));
    std::abort();
}

} // namespace

void LockOrder::wants(LockRank rank, const void *lock, const LockLabel &label, bool recursive)
{
    const Held wanted{rank, lock, label};
    Held *const same = heldLocks.find(lock);
    if (same != heldLocks.end()) {
        if (!recursive)
            speakUp(wanted, *same);
        return; // one that is held already is not waited for
    }
    Held *const broken =
        std::find_if(heldLocks.begin(), heldLocks.end(), [rank](const Held &held) { return !comesAfter(rank, held); });
    if (broken != heldLocks.end())
        speakUp(wanted, *broken);
}

void LockOrder::has(LockRank rank, const void *lock, const LockLabel &label)
{
    if (heldLocks.count < heldLocks.locks.size())
        heldLocks.locks[heldLocks.count++] = Held{rank, lock, label};
}

void LockOrder::gives(const void *lock)
{
    // The innermost of a recursive lock.
    for (Held *held = heldLocks.end(); held != heldLocks.begin();) {
        if ((--held)->lock != lock)
            continue;
        std::move(held + 1, heldLocks.end(), held);
        --heldLocks.count;
        return;
    }
}

int LockOrder::held()
{
    return static_cast<int>(heldLocks.count);
}

void LockOrder::setHandler(Handler handler)
{
    brokenHandler = handler;
}

} // namespace Quire
