#pragma once

/// \file
/// The server access lock: one thread at a time drives the server.

#include <QString>
#include <QTime>

#include <cstddef>

#include <quire/platform/Automation.h>
#include <quire/platform/Export.h>
#include <quire/session/QuireCOM.h>

namespace Quire {

/// Holds the server access lock for one scope: declared right before a sequence of server calls, gone right after it,
/// also when an exception passes.
///
/// There is one lock in the process, QuireCOM::m_ComMutex. The first lock object of a thread acquires it, waiting as
/// long as that takes, and releases it when destroyed; further ones on the same thread, while the first is alive, do
/// nothing. So they may be nested freely, and destroyed only on the thread that made them, innermost first. A thread
/// that holds the lock must not wait for another thread that needs it.
///
/// The name says what is about to be done on the server: "Class::Method", "Class::Method:step". It shows only while
/// sMutexDebugging is on: a thread that had to wait writes `locked(NAME) MS ms [NAME OF THE HOLDER BEFORE]` to the
/// debugger output, and each release of a named object writes `NAME unlocked` to the debug log with "quireCom" as the
/// source file. Each line to the debugger is cut at 255 characters.
///
/// Objects live on the stack of the thread that works; none is shared. A name given as a literal is kept by address and
/// costs nothing while debugging is off. Names in 8 bits are UTF-8.
class QUIRE_EXPORT QUIRE_SCOPED_CAPABILITY QuireCOMMutex
{
public:
    /// Turns on the lines described above. Nothing in the library sets it; set it before other threads use the lock.
    static bool sMutexDebugging;

    /// Takes the lock under \a name.
    QuireCOMMutex(QString name) QUIRE_ACQUIRE(serverAccess);
    /// Takes the lock under the literal \a label, which must outlive the object.
    template<std::size_t Size>
    QuireCOMMutex(const char (&label)[Size]) QUIRE_ACQUIRE(serverAccess)
        : m_label(label)
    {
        threadlock();
    }
    /// Takes the lock under the text in \a buffer, which is copied.
    template<std::size_t Size>
    QuireCOMMutex(char (&buffer)[Size]) QUIRE_ACQUIRE(serverAccess)
        : QuireCOMMutex(QString::fromUtf8(buffer))
    {}
    /// Takes the lock without a name: its release writes no line.
    QuireCOMMutex() QUIRE_ACQUIRE(serverAccess);
    /// Releases the lock if this object acquired it.
    ~QuireCOMMutex() QUIRE_RELEASE()
    {
        if (m_owns)
            unlock();
    }

    /// Goes on under the literal \a label, for another step of the same work.
    template<std::size_t Size>
    void goOn(const char (&label)[Size]) QUIRE_REQUIRES(serverAccess)
    {
        m_label = label;
        if (m_owns && sMutexDebugging)
            QuireCOM::m_LockStr = name();
    }

private:
    Q_DISABLE_COPY(QuireCOMMutex)
    friend struct QuireCOMMutexProbe; // the tests look at the workers below

    /// Acquires the mutex and records this thread as its holder.
    void lock() QUIRE_NO_THREAD_SAFETY_ANALYSIS; // which knows no QMutex
    /// One attempt on the mutex without waiting; records no holder and does not make this object the owner.
    bool tryLock();
    /// Forgets the holder and releases the mutex.
    void unlock();
    /// True when any thread holds the mutex, which is left as it was found.
    bool locked();
    /// Acquires the mutex for this object unless the calling thread holds it already. Inline, as all that a nested lock
    /// object does: it should cost next to nothing.
    void threadlock()
    {
        if (threadlocked())
            return;
        lock();
        m_owns = true;
    }
    /// True when the calling thread holds the mutex through a lock object. Relaxed suffices: a thread looks for its own
    /// identifier only, which nobody else ever stores.
    bool threadlocked() { return QuireCOM::m_LockThreadID.loadRelaxed() == GetCurrentThreadId(); }

    QString name() const;
    void traceLocked(const QTime &start) QUIRE_REQUIRES(serverAccess);
    void traceUnlocked() const;

    bool m_owns = false;
    QString m_name;
    const char *m_label = nullptr; // in place of m_name when the name is a literal
};

} // namespace Quire
