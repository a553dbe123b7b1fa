#pragma once

#include <mutex>
#include <system_error>
#include <vesk/base/sync_point.h>

namespace vesk::framework::usd_viewport {

/// Holds a mutex, and lets its thread know that it does: the same thread asking again is told instead of
/// hanging for ever, and whoever owns the mutex may die while its own thread holds it.
///
/// Lives on the stack. Thread: the one that made it.
class OwnedLock
{
public:
    /// Throws: `std::system_error` resource_deadlock_would_occur when this thread already holds the mutex.
    explicit OwnedLock(std::mutex& mutex) : m_outer(_innermost())
    {
        if (_find(mutex))
            throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
        VESK_SYNC_LOCK("camera.lock", mutex);
        mutex.lock();
        m_mutex = &mutex;
        _innermost() = this;
    }

    ~OwnedLock()
    {
        _innermost() = m_outer;
        _unlock();
    }

    OwnedLock(const OwnedLock&) = delete;
    OwnedLock& operator=(const OwnedLock&) = delete;

    /// Unlocks the mutex if this thread holds it; the lock that did so has no mutex any more.
    static void release(std::mutex& mutex)
    {
        if (OwnedLock* lock = _find(mutex)) lock->_unlock();
    }

private:
    void _unlock()
    {
        if (!m_mutex) return;
        m_mutex->unlock();
        m_mutex = nullptr;
    }

    // The locks of this thread, newest first.
    static OwnedLock*& _innermost()
    {
        static thread_local OwnedLock* lock = nullptr;
        return lock;
    }
    static OwnedLock* _find(const std::mutex& mutex)
    {
        OwnedLock* lock = _innermost();
        while (lock && lock->m_mutex != &mutex)
            lock = lock->m_outer;
        return lock;
    }

    OwnedLock* const m_outer;
    std::mutex* m_mutex = nullptr;
};

} // namespace vesk::framework::usd_viewport
