#include "pool.h"

#include <vesk/base/executor.h>
#include <vesk/base/thread_pool.h>

#include <deque>
#include <mutex>

// Stands in for the default pool of vesk/base, whose threads no schedule could drive.
namespace {

class QueueExecutor final : public vesk::base::Executor
{
public:
    void post(vesk::base::Work work) override
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back(std::move(work));
    }

    vesk::base::Work take()
    {
        const std::lock_guard lock(m_mutex);
        if (m_queue.empty()) return vesk::base::Work();
        vesk::base::Work work = std::move(m_queue.front());
        m_queue.pop_front();
        return work;
    }

private:
    std::mutex m_mutex;
    std::deque<vesk::base::Work> m_queue;
};

const std::shared_ptr<QueueExecutor>& pool()
{
    static const std::shared_ptr<QueueExecutor> executor = std::make_shared<QueueExecutor>();
    return executor;
}

} // namespace

namespace vesk::base {

const ExecutorPtr& defaultExecutor(Priority)
{
    static const ExecutorPtr executor = pool();
    return executor;
}

void parallelFor(std::size_t count, std::size_t,
                 const std::function<void(std::size_t first, std::size_t last)>& body)
{
    if (count != 0) body(0, count);
}

} // namespace vesk::base

namespace vesk::tests {

bool runPooledPiece()
{
    vesk::base::Work work = pool()->take();
    if (!work) return false;
    work.run();
    return true;
}

std::size_t runPooledWork()
{
    std::size_t count = 0;
    while (runPooledPiece())
        ++count;
    return count;
}

void dropPooledWork()
{
    while (pool()->take()) {
    }
}

} // namespace vesk::tests
