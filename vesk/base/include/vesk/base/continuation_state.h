#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include <vesk/base/future_state.h>

/// What stands behind `then` and `recover`. Hosts use future.h.
namespace vesk::base::detail {

/// The call that `then` makes: the callable with the source's value.
template <class T, class F>
decltype(auto) callWithValue(F& function, State<T>& source)
{
    if constexpr (std::is_void_v<T>)
        return function();
    else
        return function(std::as_const(source).value());
}

/// One link of a chain: the state of the new future, its place in the source's list, and the work that the
/// executor queues are one object, so a link costs one allocation.
///
/// References: it is made with two, one for the list (later the executor's queue) and one for the first
/// future.
template <class T, class R, class F>
class ContinuationState : public State<R>, public Continuation
{
public:
    using ResultType = R;

    ContinuationState(ExecutorPtr executor, F function)
        : State<R>(std::move(executor), 2), m_function(std::move(function))
    {}

    void onSourceComplete() noexcept final
    {
        if (passesErrorOn() && source->error()) {
            std::exception_ptr error = source->error();
            letGo();
            this->completeWithErrorAndDrop(std::move(error));
            return;
        }
        try {
            // The copy outlives the post: the work may have run, and this be gone, before post returns.
            const ExecutorPtr executor = this->executor();
            executor->post(Work(static_cast<WorkNode*>(this)));
        } catch (...) {
            // The executor refused: the work that it was given has been abandoned with its argument.
        }
    }

    void abandon() noexcept final
    {
        letGo();
        this->completeWithErrorAndDrop(brokenPromise());
    }

protected:
    virtual bool passesErrorOn() const noexcept = 0;

    State<T>& typedSource() noexcept { return static_cast<State<T>&>(*source); }

    /// Runs the call, lets go of the callable and the source, and only then completes: who waits for the
    /// result finds nothing captured any more.
    template <class Call>
    void finish(Call&& call) noexcept
    {
        State<R>& state = *this;
        try {
            if constexpr (std::is_void_v<R>)
                call(*m_function);
            else
                state.store(call(*m_function));
        } catch (...) {
            std::exception_ptr error = std::current_exception();
            letGo();
            this->completeWithErrorAndDrop(std::move(error));
            return;
        }
        letGo();
        this->completeAndDrop();
    }

private:
    void letGo() noexcept
    {
        m_function.reset();
        if (StateBase* done = std::exchange(source, nullptr)) done->dropReference();
    }

    std::optional<F> m_function;
};

template <class T, class R, class F>
class ThenState final : public ContinuationState<T, R, F>
{
public:
    using ContinuationState<T, R, F>::ContinuationState;

    void run() noexcept override
    {
        this->finish([this](F& function) -> R { return callWithValue<T>(function, this->typedSource()); });
    }

private:
    bool passesErrorOn() const noexcept override { return true; }
};

/// Handle makes the finished future that the callable receives from the source's state.
template <class T, class R, class F, class Handle>
class RecoverState final : public ContinuationState<T, R, F>
{
public:
    using ContinuationState<T, R, F>::ContinuationState;

    void run() noexcept override
    {
        this->finish([this](F& function) -> R {
            return function(Handle(StatePtr<State<T>>::share(this->typedSource())));
        });
    }

private:
    bool passesErrorOn() const noexcept override { return false; }
};

} // namespace vesk::base::detail
