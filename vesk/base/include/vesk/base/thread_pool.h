#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include <vesk/base/executor.h>

namespace vesk::base {

/// A fixed number of threads behind three lanes of work. Work of one lane starts in the order in which it was
/// posted. Blocking in a piece of work takes a thread out of service: never wait there for other work of the
/// same pool.
class VESK_BASE_EXPORT ThreadPool
{
public:
    /// threadCount is at least 1 (0 counts as 1).
    explicit ThreadPool(unsigned threadCount);

    /// Abandons queued work, lets running work end and joins. Destroyed from work of its own it leaves its
    /// threads to end by themselves.
    ~ThreadPool();

    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// The pool that continuations run on unless told otherwise. Never destroyed; when the process exits it
    /// finishes the work in hand (for one second at most) and starts no more. At least two threads.
    static ThreadPool& defaultPool();

    /// An executor of one lane. It may outlive the pool; it abandons what is posted then. Thread: any.
    const ExecutorPtr& executor(Priority priority = Priority::Normal) const;

    /// How many threads the pool has.
    unsigned threadCount() const;

    /// Blocks until nothing is queued and nothing runs. Thread: any that is not of this pool.
    void waitUntilIdle() const;

private:
    friend struct DefaultPool;
    struct Shared;
    class Lane;

    std::shared_ptr<Shared> m_shared;
    std::array<ExecutorPtr, 3> m_lanes;
    std::vector<std::thread> m_threads;
};

/// Calls body(first, last) for pieces of [0, count) that are at least grain long (the last one excepted), on
/// the calling thread and on free threads of the default pool, and returns when all are done. The pieces do
/// not depend on the number of threads. Never waits for a free thread, so it may be called on the pool
/// itself. Throws: the first exception of a body, after the running pieces ended; pieces not begun are
/// dropped then.
VESK_BASE_EXPORT void parallelFor(std::size_t count, std::size_t grain,
                                  const std::function<void(std::size_t first, std::size_t last)>& body);

} // namespace vesk::base
