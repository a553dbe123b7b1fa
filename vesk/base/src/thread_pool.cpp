#include <vesk/base/thread_pool.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <utility>

#include <vesk/base/logging.h>

#include "work_lanes.h"

namespace vesk::base {

struct ThreadPool::Shared
{
    mutable std::mutex mutex;
    std::condition_variable workAdded;
    mutable std::condition_variable becameIdle;
    WorkLanes lanes;
    unsigned sleeping = 0;
    unsigned running = 0;
    bool closed = false;

    static Shared*& ofThisThread() noexcept
    {
        static thread_local Shared* shared = nullptr;
        return shared;
    }

    void post(Priority priority, Work work)
    {
        bool wake = false;
        {
            std::lock_guard lock(mutex);
            if (closed) return;
            lanes.append(priority, std::move(work));
            wake = sleeping > 0;
        }
        if (wake) workAdded.notify_one();
    }

    void runWorker()
    {
        ofThisThread() = this;
        std::unique_lock lock(mutex);
        while (!closed) {
            if (lanes.isEmpty()) {
                ++sleeping;
                workAdded.wait(lock);
                --sleeping;
                continue;
            }
            Work work = lanes.take();
            ++running;
            lock.unlock();
            work.run();
            lock.lock();
            --running;
            if (running == 0 && (lanes.isEmpty() || closed)) becameIdle.notify_all();
        }
    }

    /// Takes no more work and drops what is queued, outside the lock: dropping runs code of others.
    void close()
    {
        {
            std::lock_guard lock(mutex);
            closed = true;
        }
        workAdded.notify_all();
        for (;;) {
            Work work;
            {
                std::lock_guard lock(mutex);
                work = lanes.take();
                if (lanes.isEmpty()) becameIdle.notify_all();
            }
            if (!work) return;
        }
    }
};

class ThreadPool::Lane final : public Executor
{
public:
    Lane(std::shared_ptr<Shared> shared, Priority priority)
        : m_shared(std::move(shared)), m_priority(priority)
    {}

    void post(Work work) override { m_shared->post(m_priority, std::move(work)); }

private:
    const std::shared_ptr<Shared> m_shared;
    const Priority m_priority;
};

ThreadPool::ThreadPool(unsigned threadCount) : m_shared(std::make_shared<Shared>())
{
    for (std::size_t i = 0; i < m_lanes.size(); ++i)
        m_lanes[i] = std::make_shared<Lane>(m_shared, static_cast<Priority>(i));
    threadCount = std::max(threadCount, 1u);
    m_threads.reserve(threadCount);
    try {
        for (unsigned i = 0; i < threadCount; ++i)
            m_threads.emplace_back([shared = m_shared] { shared->runWorker(); });
    } catch (const std::system_error&) {
        // The system is short of threads: fewer are slower, none is a failure.
        if (m_threads.empty()) throw;
    }
}

ThreadPool::~ThreadPool()
{
    m_shared->close();
    const bool onOwnThread = Shared::ofThisThread() == m_shared.get();
    for (std::thread& thread : m_threads) {
        if (onOwnThread)
            thread.detach();
        else
            thread.join();
    }
}

const ExecutorPtr& ThreadPool::executor(Priority priority) const
{
    return m_lanes[static_cast<std::size_t>(priority)];
}

unsigned ThreadPool::threadCount() const { return static_cast<unsigned>(m_threads.size()); }

void ThreadPool::waitUntilIdle() const
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->becameIdle.wait(lock, [this] { return m_shared->running == 0 && m_shared->lanes.isEmpty(); });
}

/// The default pool with the executors that futures carry: aliasing pointers, so that copying them counts
/// nothing.
struct DefaultPool
{
    ThreadPool pool{std::max(2u, std::thread::hardware_concurrency())};
    std::array<ExecutorPtr, 3> lanes;

    DefaultPool()
    {
        for (std::size_t i = 0; i < lanes.size(); ++i)
            lanes[i] = ExecutorPtr(std::shared_ptr<void>(), pool.executor(static_cast<Priority>(i)).get());
        // Nobody will join them.
        for (std::thread& thread : pool.m_threads)
            thread.detach();
    }

    static DefaultPool& get()
    {
        static DefaultPool& instance = *_make();
        return instance;
    }

private:
    static DefaultPool* _make()
    {
        // Statics that existed before are destroyed after the handler: work in hand may still use them.
        logging::defaultLogger();
        static DefaultPool* made = nullptr;
        made = new DefaultPool;
        std::atexit([] { made->_finishWorkInHand(); });
        return made;
    }

    void _finishWorkInHand()
    {
        ThreadPool::Shared& shared = *pool.m_shared;
        const unsigned own = ThreadPool::Shared::ofThisThread() == &shared ? 1 : 0;
        std::unique_lock lock(shared.mutex);
        shared.closed = true;
        shared.becameIdle.wait_for(lock, std::chrono::seconds(1), [&] { return shared.running <= own; });
    }
};

ThreadPool& ThreadPool::defaultPool() { return DefaultPool::get().pool; }

const ExecutorPtr& defaultExecutor(Priority priority)
{
    return DefaultPool::get().lanes[static_cast<std::size_t>(priority)];
}

} // namespace vesk::base
