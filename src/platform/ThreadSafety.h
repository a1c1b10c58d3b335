#pragma once

/// \file
/// Says to clang's thread-safety analysis what locks are and what they guard; other compilers see nothing of it.

// Attributes can be put in no other way than by macros.
// NOLINTBEGIN(cppcoreguidelines-macro-usage): see above

#if defined(__clang__)
#define QUIRE_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define QUIRE_THREAD_ATTRIBUTE(x)
#endif

/// A class whose objects are locks.
#define QUIRE_CAPABILITY(name) QUIRE_THREAD_ATTRIBUTE(capability(name))
/// A class whose objects hold a lock for one scope.
#define QUIRE_SCOPED_CAPABILITY QUIRE_THREAD_ATTRIBUTE(scoped_lockable)
/// A member that is used only while the lock is held.
#define QUIRE_GUARDED_BY(lock) QUIRE_THREAD_ATTRIBUTE(guarded_by(lock))
/// A function that takes the lock, the object's own without an argument.
#define QUIRE_ACQUIRE(...) QUIRE_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
/// A function that takes the lock when its answer is the first argument.
#define QUIRE_TRY_ACQUIRE(...) QUIRE_THREAD_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
/// A function that releases the lock.
#define QUIRE_RELEASE(...) QUIRE_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
/// A function that is called while the lock is held.
#define QUIRE_REQUIRES(...) QUIRE_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
/// A function that is not called while the lock is held.
#define QUIRE_EXCLUDES(...) QUIRE_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
/// A function whose use of locks the analysis cannot follow; says why on the line.
#define QUIRE_NO_THREAD_SAFETY_ANALYSIS QUIRE_THREAD_ATTRIBUTE(no_thread_safety_analysis)

// NOLINTEND(cppcoreguidelines-macro-usage)
