#pragma once

#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>

namespace vesk::framework::usd_viewport {

/// Holds a mutex and remembers which thread does, so that the same thread asking again is told instead of
/// hanging for ever.
class OwnedLock
{
public:
    /// Throws: `std::system_error` resource_deadlock_would_occur when this thread already holds the mutex.
    OwnedLock(std::mutex& mutex, std::atomic<std::thread::id>& owner) : m_owner(owner)
    {
        if (owner.load(std::memory_order_relaxed) == std::this_thread::get_id())
            throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
        m_lock = std::unique_lock<std::mutex>(mutex);
        owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }

    ~OwnedLock() { m_owner.store(std::thread::id(), std::memory_order_relaxed); }

    OwnedLock(const OwnedLock&) = delete;
    OwnedLock& operator=(const OwnedLock&) = delete;

private:
    std::unique_lock<std::mutex> m_lock;
    std::atomic<std::thread::id>& m_owner;
};

} // namespace vesk::framework::usd_viewport
