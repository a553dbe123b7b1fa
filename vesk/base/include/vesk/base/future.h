#pragma once

#include <chrono>
#include <exception>
#include <type_traits>
#include <utility>

#include <vesk/base/continuation_state.h>
#include <vesk/base/executor.h>
#include <vesk/base/future_error.h>
#include <vesk/base/future_state.h>
#include <vesk/base/thread_pool.h>

namespace vesk::base {

template <class T>
class Future;

namespace detail {
template <class T, class F>
struct ThenResult
{
    static_assert(std::is_invocable_v<F&, const T&>, "then() needs a callable that takes the future's value");
    using type = std::invoke_result_t<F&, const T&>;
};
template <class F>
struct ThenResult<void, F>
{
    static_assert(std::is_invocable_v<F&>, "then() on a Future<void> needs a callable without parameters");
    using type = std::invoke_result_t<F&>;
};
template <class T, class F>
using ThenResultOf = std::decay_t<typename ThenResult<T, std::decay_t<F>>::type>;
template <class T, class F>
using RecoverResultOf = std::decay_t<std::invoke_result_t<std::decay_t<F>&, Future<T>>>;
} // namespace detail

/// A handle to a result that arrives once, later, perhaps as an error. Copies share the result; any number of
/// continuations can be attached, before and after it arrived.
///
///     Future<GfRange3f> bounds = model.getSceneBounds();
///     bounds.then([](const GfRange3f& box) { show(box); }).recover([](Future<void> end) { report(end); });
///
/// Work and continuations run to their end whether or not anybody holds a handle. A continuation runs on the
/// executor that is named, else on the one that the future carries (its producer's choice, the default pool
/// when the producer made none), and the new future carries the same. Do not wait for a future of a pool on
/// that pool. Thread: any, for every operation. Throws: FutureError "no state" from each operation but
/// valid() when empty.
template <class T>
class Future
{
public:
    /// The type of the result, void for a bare end.
    using ValueType = T;

    /// A future without shared state.
    Future() = default;

    /// True unless the future is empty.
    bool valid() const noexcept { return static_cast<bool>(m_state); }

    /// True when the value or the error is there.
    bool isReady() const { return _state().isComplete(); }

    /// Blocks until the value or the error is there.
    void wait() const { _state().wait(); }

    /// Waits at most that long; returns isReady().
    bool waitFor(std::chrono::nanoseconds timeout) const { return _state().waitFor(timeout); }

    /// Waits, then returns the value or rethrows the error. The reference lives as long as a handle does.
    template <class U = T>
    std::enable_if_t<!std::is_void_v<U>, const U&> get() const&
    {
        _waitForValue();
        return _state().value();
    }

    /// On a temporary: a copy of the value. A value that cannot be copied is moved out, for a result that
    /// only this handle reads.
    template <class U = T>
    std::enable_if_t<!std::is_void_v<U>, U> get() &&
    {
        _waitForValue();
        if constexpr (std::is_copy_constructible_v<U>)
            return std::as_const(_state()).value();
        else
            return std::move(_state().value());
    }

    /// Waits, then returns or rethrows the error.
    template <class U = T>
    std::enable_if_t<std::is_void_v<U>> get() const
    {
        _waitForValue();
    }

    /// Waits; null when the future holds a value.
    std::exception_ptr error() const
    {
        wait();
        return _state().error();
    }

    /// The executor that continuations run on unless they name one.
    const ExecutorPtr& executor() const { return _state().executor(); }

    /// Runs f with the value (without arguments for void) and yields the future of what f returns. When this
    /// future fails, f does not run and the error passes on.
    template <class F>
    Future<detail::ThenResultOf<T, F>> then(F&& f) const
    {
        return then(executor(), std::forward<F>(f));
    }
    /// The same on an executor.
    template <class F>
    Future<detail::ThenResultOf<T, F>> then(ExecutorPtr on, F&& f) const;

    /// Runs f with the finished future itself, whether it holds a value or an error, and yields the future of
    /// what f returns.
    template <class F>
    Future<detail::RecoverResultOf<T, F>> recover(F&& f) const
    {
        return recover(executor(), std::forward<F>(f));
    }
    /// The same on an executor.
    template <class F>
    Future<detail::RecoverResultOf<T, F>> recover(ExecutorPtr on, F&& f) const;

    /// Says that nobody waits for the result: the work still runs to its end, and its error is dropped with
    /// the last handle.
    void detach() const { _state(); }

    /// For producers.
    explicit Future(detail::StatePtr<detail::State<T>> state) noexcept : m_state(std::move(state)) {}

private:
    detail::State<T>& _state() const
    {
        if (!m_state) detail::throwNoState();
        return *m_state;
    }

    void _waitForValue() const
    {
        wait();
        if (m_state->error()) std::rethrow_exception(m_state->error());
    }

    template <class Link, class F>
    auto _attach(ExecutorPtr on, F&& f) const
    {
        detail::State<T>& source = _state();
        Link* link = new Link(std::move(on), std::forward<F>(f));
        Future<typename Link::ResultType> result{
            detail::StatePtr<detail::State<typename Link::ResultType>>(link)};
        source.attach(*link);
        return result;
    }

    detail::StatePtr<detail::State<T>> m_state;
};

template <class T>
template <class F>
Future<detail::ThenResultOf<T, F>> Future<T>::then(ExecutorPtr on, F&& f) const
{
    return _attach<detail::ThenState<T, detail::ThenResultOf<T, F>, std::decay_t<F>>>(std::move(on),
                                                                                      std::forward<F>(f));
}

template <class T>
template <class F>
Future<detail::RecoverResultOf<T, F>> Future<T>::recover(ExecutorPtr on, F&& f) const
{
    return _attach<detail::RecoverState<T, detail::RecoverResultOf<T, F>, std::decay_t<F>, Future<T>>>(
        std::move(on), std::forward<F>(f));
}

} // namespace vesk::base

#include <vesk/base/packaged_task.h>
#include <vesk/base/promise.h>
