#include <vesk/base/future_state.h>
#include <vesk/base/sync_point.h>

#include <condition_variable>
#include <mutex>

namespace vesk::base::detail {

namespace {

/// Continuations of completed states that this thread has yet to tell, first in first out. Whoever is telling
/// already goes on with what is appended: completion never nests.
struct TellQueue
{
    Continuation* first = nullptr;
    Continuation* last = nullptr;
    bool telling = false;

    void append(Continuation& continuation) noexcept
    {
        continuation.next = nullptr;
        if (last)
            last->next = &continuation;
        else
            first = &continuation;
        last = &continuation;
    }

    void tellAll() noexcept
    {
        if (telling) return;
        telling = true;
        while (Continuation* continuation = first) {
            first = continuation->nextContinuation();
            if (!first) last = nullptr;
            continuation->onSourceComplete();
        }
        telling = false;
    }
};

thread_local TellQueue t_tellQueue;

/// A thread that waits. Shared by the waiting thread and the state's list, since a wait may give up.
class Waiter final : public Continuation
{
public:
    Waiter() { source = waitingThread(); }

    // No executor ever queues it.
    void run() noexcept override {}
    void abandon() noexcept override {}

    void onSourceComplete() noexcept override
    {
        {
            std::lock_guard lock(m_mutex);
            m_complete = true;
        }
        m_completed.notify_one();
        source->dropReference();
        dropReference();
    }

    void wait()
    {
        std::unique_lock lock(m_mutex);
        VESK_SYNC_WAIT("future.wait", lock, m_complete);
        m_completed.wait(lock, [this] { return m_complete; });
    }

    bool waitFor(std::chrono::nanoseconds timeout)
    {
        std::unique_lock lock(m_mutex);
        return m_completed.wait_for(lock, timeout, [this] { return m_complete; });
    }

    void dropReference() noexcept
    {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }

private:
    std::atomic<int> m_references{2};
    std::mutex m_mutex;
    std::condition_variable m_completed;
    bool m_complete = false;
};

} // namespace

StateBase::~StateBase() = default;

void StateBase::complete() noexcept { _tell(false); }

void StateBase::completeAndDrop() noexcept
{
    if (!_tell(true)) dropReference();
}

bool StateBase::_tell(bool giveReference) noexcept
{
    VESK_SYNC_POINT("future.complete");
    Continuation* newestFirst = m_waiting.exchange(completeMark(), std::memory_order_acq_rel);
    if (!newestFirst) return false;
    Continuation* oldestFirst = nullptr;
    while (newestFirst) {
        Continuation* next = newestFirst->nextContinuation();
        newestFirst->next = oldestFirst;
        oldestFirst = newestFirst;
        newestFirst = next;
    }
    VESK_SYNC_POINT("future.tell");
    TellQueue& queue = t_tellQueue;
    while (oldestFirst) {
        Continuation& continuation = *oldestFirst;
        oldestFirst = continuation.nextContinuation();
        const bool blocksThread = continuation.blocksThread();
        if (oldestFirst || !giveReference) addReference();
        continuation.source = this;
        if (blocksThread)
            continuation.onSourceComplete();
        else
            queue.append(continuation);
    }
    // From here on this may be gone.
    queue.tellAll();
    return giveReference;
}

void StateBase::attach(Continuation& continuation) noexcept
{
    Continuation* head = m_waiting.load(std::memory_order_acquire);
    while (head != completeMark()) {
        VESK_SYNC_POINT("future.attach");
        continuation.next = head;
        if (m_waiting.compare_exchange_weak(head, &continuation, std::memory_order_acq_rel,
                                            std::memory_order_acquire))
            return;
    }
    const bool blocksThread = continuation.blocksThread();
    addReference();
    continuation.source = this;
    if (blocksThread) {
        continuation.onSourceComplete();
        return;
    }
    t_tellQueue.append(continuation);
    t_tellQueue.tellAll();
}

void StateBase::wait()
{
    if (isComplete()) return;
    auto* waiter = new Waiter;
    attach(*waiter);
    waiter->wait();
    waiter->dropReference();
}

bool StateBase::waitFor(std::chrono::nanoseconds timeout)
{
    if (isComplete()) return true;
    auto* waiter = new Waiter;
    attach(*waiter);
    const bool complete = waiter->waitFor(timeout);
    waiter->dropReference();
    return complete || isComplete();
}

} // namespace vesk::base::detail
