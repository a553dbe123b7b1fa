#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include <vesk/base/future.h>

namespace vesk::base {

namespace detail {

/// The state of a packaged task's future, which also holds the callable: a task costs one allocation.
template <class R, class... Args>
class TaskState : public State<R>
{
public:
    using State<R>::State;
    /// Keeps what the callable returns or throws; the future is not ready yet.
    virtual void call(Args... args) noexcept = 0;
    virtual void dropFunction() noexcept = 0;
};

template <class F, class R, class... Args>
class CallableTaskState final : public TaskState<R, Args...>
{
public:
    template <class G>
    CallableTaskState(ExecutorPtr executor, G&& function)
        : TaskState<R, Args...>(std::move(executor)), m_function(std::forward<G>(function))
    {}

    void call(Args... args) noexcept override
    {
        try {
            if constexpr (std::is_void_v<R>)
                (*m_function)(std::forward<Args>(args)...);
            else
                this->store((*m_function)(std::forward<Args>(args)...));
        } catch (...) {
            this->storeError(std::current_exception());
        }
        m_function.reset();
    }

    void dropFunction() noexcept override { m_function.reset(); }

private:
    std::optional<F> m_function;
};

} // namespace detail

template <class Signature>
class PackagedTask;

/// A callable and the future of its result. Running it fulfils the future with what the callable returns or
/// throws; destroying it unrun ends the future with "broken promise". Movable; one thread at a time.
template <class R, class... Args>
class PackagedTask<R(Args...)>
{
public:
    PackagedTask() = default;

    /// A task that runs the callable; continuations of its future run on the executor unless they name one.
    template <class F, class = std::enable_if_t<!std::is_same_v<std::decay_t<F>, PackagedTask>>>
    explicit PackagedTask(F&& function, ExecutorPtr executor = defaultExecutor())
        : m_state(new detail::CallableTaskState<std::decay_t<F>, R, Args...>(std::move(executor),
                                                                             std::forward<F>(function)))
    {}
    PackagedTask(PackagedTask&& other) noexcept = default;
    /// Takes over another task; the one before is destroyed, run or not.
    PackagedTask& operator=(PackagedTask&& other) noexcept
    {
        PackagedTask(std::move(other))._swap(*this);
        return *this;
    }
    ~PackagedTask()
    {
        if (!m_state || !m_state->claim()) return;
        m_state->dropFunction();
        m_state->completeWithError(detail::brokenPromise());
    }

    /// True unless the task is empty or was moved from.
    bool valid() const noexcept { return static_cast<bool>(m_state); }

    /// The future, any number of times, also after the run. Throws: FutureError "no state" when empty.
    Future<R> getFuture() const
    {
        if (!m_state) detail::throwNoState();
        return Future<R>(detail::StatePtr<detail::State<R>>::share(*m_state));
    }

    /// Runs the callable; a second run does nothing. Throws: FutureError "no state" when empty; never what
    /// the callable throws.
    void operator()(Args... args)
    {
        runWithEpilogue([] {}, std::forward<Args>(args)...);
    }

    /// Runs the callable and then the epilogue, and only then fulfils the future: whoever waits for it finds
    /// the work of both done. What the epilogue throws becomes the future's error. A second run calls
    /// neither. Throws: FutureError "no state" when empty.
    template <class Epilogue>
    void runWithEpilogue(Epilogue&& epilogue, Args... args)
    {
        if (!m_state) detail::throwNoState();
        if (!m_state->claim()) return;
        m_state->call(std::forward<Args>(args)...);
        try {
            epilogue();
        } catch (...) {
            m_state->storeError(std::current_exception());
        }
        m_state->complete();
    }

private:
    void _swap(PackagedTask& other) noexcept { std::swap(m_state, other.m_state); }

    detail::StatePtr<detail::TaskState<R, Args...>> m_state;
};

/// Queues a call on an executor and returns its future, which carries that executor.
template <class F>
Future<std::decay_t<std::invoke_result_t<std::decay_t<F>&>>> runOn(const ExecutorPtr& executor, F&& function)
{
    using R = std::decay_t<std::invoke_result_t<std::decay_t<F>&>>;
    PackagedTask<R()> task(std::forward<F>(function), executor);
    Future<R> future = task.getFuture();
    executor->post(Work([task = std::move(task)]() mutable { task(); }));
    return future;
}

} // namespace vesk::base
