#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <optional>
#include <utility>

#include <vesk/base/executor.h>
#include <vesk/base/future_error.h>

/// What stands behind a future. Hosts use future.h.
namespace vesk::base::detail {

class StateBase;

/// Something that waits for a state. It is told once, on the completing thread, and then ends its own life or
/// goes on as the work that an executor queues: the link to the next one serves both, one after the other.
class VESK_BASE_EXPORT Continuation : public WorkNode
{
public:
    /// The source is complete; it is referenced, and the continuation gives that reference back.
    virtual void onSourceComplete() noexcept = 0;

    /// A thread waits behind this one: it is told at once, before continuations that queue up.
    bool blocksThread() const noexcept { return source == waitingThread(); }

    Continuation* nextContinuation() const noexcept { return static_cast<Continuation*>(next); }

    /// The state, once it is complete; until then waitingThread() where a thread waits.
    StateBase* source = nullptr;

protected:
    ~Continuation() = default;

    static StateBase* waitingThread() noexcept { return reinterpret_cast<StateBase*>(std::uintptr_t{1}); }
};

/// The shared state of a future without its value: reference count, error, executor, and the list of those
/// who wait. The list is a lock-free stack whose head becomes a mark when the state is complete. Completion
/// hands continuations out through a queue of the thread instead of by nested calls, so that chains of any
/// length complete, fail and fall apart without deep stacks.
class VESK_BASE_EXPORT StateBase
{
public:
    /// Counts so many references from the start.
    explicit StateBase(ExecutorPtr executor, std::uint32_t references = 1)
        : m_references(references), m_executor(std::move(executor))
    {}
    StateBase(const StateBase&) = delete;
    StateBase& operator=(const StateBase&) = delete;

    void addReference() noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void dropReference() noexcept
    {
        // Who holds the only reference needs no atomic subtraction: nobody can add one.
        if (m_references.load(std::memory_order_acquire) == 1 ||
            m_references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    bool isComplete() const noexcept { return m_waiting.load(std::memory_order_acquire) == completeMark(); }
    const std::exception_ptr& error() const noexcept { return m_error; }
    const ExecutorPtr& executor() const noexcept { return m_executor; }

    /// True for the first producer that wants to complete the state; the others must leave it alone.
    bool claim() noexcept { return !m_claimed.exchange(true, std::memory_order_relaxed); }

    void storeError(std::exception_ptr error) noexcept { m_error = std::move(error); }

    void completeWithError(std::exception_ptr error) noexcept
    {
        storeError(std::move(error));
        complete();
    }

    /// Publishes the value or error that was stored before and tells those who wait.
    void complete() noexcept;

    /// The same, and gives a reference of the caller's back: to the last of those who wait, where there are
    /// any.
    void completeAndDrop() noexcept;
    void completeWithErrorAndDrop(std::exception_ptr error) noexcept
    {
        m_error = std::move(error);
        completeAndDrop();
    }

    /// Takes over the continuation; tells it at once when the state is complete.
    void attach(Continuation& continuation) noexcept;

    void wait();
    bool waitFor(std::chrono::nanoseconds timeout);

protected:
    virtual ~StateBase();

private:
    /// True when the last of those who wait was given a reference of the caller's.
    bool _tell(bool giveReference) noexcept;

    static Continuation* completeMark() noexcept
    {
        return reinterpret_cast<Continuation*>(std::uintptr_t{1});
    }

    std::atomic<std::uint32_t> m_references;
    std::atomic<bool> m_claimed{false};
    std::atomic<Continuation*> m_waiting{nullptr};
    std::exception_ptr m_error;
    ExecutorPtr m_executor;
};

template <class T>
class State : public StateBase
{
public:
    using StateBase::StateBase;

    const T& value() const noexcept { return *m_value; }
    T& value() noexcept { return *m_value; }

    template <class... Args>
    void store(Args&&... args)
    {
        m_value.emplace(std::forward<Args>(args)...);
    }

private:
    std::optional<T> m_value;
};

template <>
class State<void> : public StateBase
{
public:
    using StateBase::StateBase;

    void store() noexcept {}
};

/// Counts a reference to a state.
template <class S>
class StatePtr
{
public:
    StatePtr() = default;
    /// Takes over a reference that is already counted.
    explicit StatePtr(S* counted) noexcept : m_state(counted) {}
    StatePtr(const StatePtr& other) noexcept : m_state(other.m_state)
    {
        if (m_state) m_state->addReference();
    }
    StatePtr(StatePtr&& other) noexcept : m_state(std::exchange(other.m_state, nullptr)) {}
    StatePtr& operator=(StatePtr other) noexcept
    {
        std::swap(m_state, other.m_state);
        return *this;
    }
    ~StatePtr()
    {
        if (m_state) m_state->dropReference();
    }

    static StatePtr share(S& state) noexcept
    {
        state.addReference();
        return StatePtr(&state);
    }

    S* get() const noexcept { return m_state; }
    S* operator->() const noexcept { return m_state; }
    S& operator*() const noexcept { return *m_state; }
    explicit operator bool() const noexcept { return m_state != nullptr; }

private:
    S* m_state = nullptr;
};

} // namespace vesk::base::detail
