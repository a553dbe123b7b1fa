#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>
#include <vesk/base/future_error.h>
#include <vesk/base/sync_point.h>

namespace vesk::framework::usd_viewport {

/// Says whether a model is still alive, for work that was queued with its plain address.
///
/// Work enters before it touches the model and leaves afterwards; close() lets nobody else enter and waits
/// for work on other threads. Work on the closing thread itself is not waited for: it is the one that closes.
///
/// Thread: any.
class LifeToken
{
public:
    /// Returns false once the model is gone or going.
    bool enter()
    {
        VESK_SYNC_POINT("life.enter");
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closed) return false;
        m_inside.push_back(std::this_thread::get_id());
        return true;
    }

    void leave()
    {
        VESK_SYNC_POINT("life.leave");
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            for (std::size_t index = 0; index < m_inside.size(); ++index) {
                if (m_inside[index] != std::this_thread::get_id()) continue;
                m_inside[index] = m_inside.back();
                m_inside.pop_back();
                break;
            }
        }
        m_left.notify_all();
    }

    void close()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_closed = true;
        VESK_SYNC_WAIT("life.close", lock, _isEmptyButForThisThread());
        m_left.wait(lock, [this] { return _isEmptyButForThisThread(); });
    }

private:
    bool _isEmptyButForThisThread() const
    {
        for (const std::thread::id& thread : m_inside) {
            if (thread != std::this_thread::get_id()) return false;
        }
        return true;
    }

    std::mutex m_mutex;
    std::condition_variable m_left;
    std::vector<std::thread::id> m_inside;
    bool m_closed = false;
};

/// One visit to a model, if it lives.
class LifeVisit
{
public:
    explicit LifeVisit(LifeToken& life) : m_life(life.enter() ? &life : nullptr) {}
    ~LifeVisit()
    {
        if (m_life) m_life->leave();
    }
    LifeVisit(const LifeVisit&) = delete;
    LifeVisit& operator=(const LifeVisit&) = delete;

    explicit operator bool() const { return m_life != nullptr; }

private:
    LifeToken* const m_life;
};

/// Wraps work so that it runs only while the model lives; later it ends with "broken promise".
template <class Work>
auto whileAlive(std::shared_ptr<LifeToken> life, Work work)
{
    return [life = std::move(life), work = std::move(work)](auto&&... arguments) {
        const LifeVisit visit(*life);
        if (!visit) throw vesk::base::FutureError(vesk::base::FutureErrorCode::BrokenPromise);
        return work(std::forward<decltype(arguments)>(arguments)...);
    };
}

} // namespace vesk::framework::usd_viewport
