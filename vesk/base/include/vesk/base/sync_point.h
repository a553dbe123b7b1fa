#pragma once

/// Named places in our own sources where the order of threads matters. Tests that compile these sources with
/// VESK_SYNC_POINTS drive threads through every order of the places (tests/schedules); everywhere else all of
/// this expands to nothing. Hosts have no use for it.
///
/// No point lies under a lock, except under one that is taken with VESK_SYNC_LOCK.
#ifdef VESK_SYNC_POINTS

#include <functional>

namespace vesk::base::detail {

/// Another thread may go on here.
void reachSyncPoint(const char* name);

/// As reachSyncPoint(), and this thread cannot go on before the condition holds.
void awaitAtSyncPoint(const char* name, const std::function<bool()>& condition);

} // namespace vesk::base::detail

/// A step begins.
#define VESK_SYNC_POINT(name) ::vesk::base::detail::reachSyncPoint(name)

/// Stands before a mutex is locked for longer than one copy.
#define VESK_SYNC_LOCK(name, mutex)                                                                          \
    ::vesk::base::detail::awaitAtSyncPoint(name, [&] {                                                       \
        if (!(mutex).try_lock()) return false;                                                               \
        (mutex).unlock();                                                                                    \
        return true;                                                                                         \
    })

/// Stands before a wait on a condition variable: the lock that the wait gives up, and what it waits for.
#define VESK_SYNC_WAIT(name, lock, condition)                                                                \
    do {                                                                                                     \
        (lock).unlock();                                                                                     \
        ::vesk::base::detail::awaitAtSyncPoint(name, [&] {                                                   \
            (lock).lock();                                                                                   \
            const bool holds = (condition);                                                                  \
            (lock).unlock();                                                                                 \
            return holds;                                                                                    \
        });                                                                                                  \
        (lock).lock();                                                                                       \
    } while (false)

#else
#define VESK_SYNC_POINT(name) static_cast<void>(0)
#define VESK_SYNC_LOCK(name, mutex) static_cast<void>(0)
#define VESK_SYNC_WAIT(name, lock, condition) static_cast<void>(0)
#endif
