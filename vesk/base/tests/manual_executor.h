#pragma once

#include <deque>
#include <mutex>

#include <vesk/base/executor.h>

namespace vesk::base::tests {

/// Queues work until the test runs or drops it.
class ManualExecutor final : public Executor
{
public:
    void post(Work work) override
    {
        std::lock_guard lock(m_mutex);
        m_queue.push_back(std::move(work));
    }

    bool runOne()
    {
        Work work = _take();
        if (!work) return false;
        work.run();
        return true;
    }

    std::size_t runAll()
    {
        std::size_t count = 0;
        while (runOne())
            ++count;
        return count;
    }

    void dropAll()
    {
        while (_take()) {
        }
    }

    std::size_t size() const
    {
        std::lock_guard lock(m_mutex);
        return m_queue.size();
    }

private:
    Work _take()
    {
        std::lock_guard lock(m_mutex);
        if (m_queue.empty()) return Work();
        Work work = std::move(m_queue.front());
        m_queue.pop_front();
        return work;
    }

    mutable std::mutex m_mutex;
    std::deque<Work> m_queue;
};

/// Refuses all work.
class ThrowingExecutor final : public Executor
{
public:
    void post(Work) override { throw std::bad_alloc(); }
};

} // namespace vesk::base::tests
