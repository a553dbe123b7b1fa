#pragma once

#include <exception>
#include <utility>

#include <vesk/base/future.h>

namespace vesk::base {

/// The producer's side of a future: fulfils it once. A promise that dies unfulfilled ends its future with
/// "broken promise". Movable; one thread at a time, except that competing set calls are safe and the first
/// wins.
///
///     Promise<PickingResult> promise(rendererExecutor);
///     queuePick(x, y, std::move(promise));
///     return future;
template <class T>
class Promise
{
public:
    /// The executor that continuations of the future run on unless they name one.
    explicit Promise(ExecutorPtr executor = defaultExecutor())
        : m_state(new detail::State<T>(std::move(executor)))
    {}
    Promise(Promise&& other) noexcept = default;
    /// Takes over another promise; the one before dies.
    Promise& operator=(Promise&& other) noexcept
    {
        Promise(std::move(other))._swap(*this);
        return *this;
    }
    ~Promise()
    {
        if (m_state && m_state->claim()) m_state->completeWithError(detail::brokenPromise());
    }

    /// True unless the promise was moved from.
    bool valid() const noexcept { return static_cast<bool>(m_state); }

    /// The future, any number of times. Throws: FutureError "no state" after a move.
    Future<T> getFuture() const
    {
        _state();
        return Future<T>(m_state);
    }

    /// Fulfils the future with a T made from the arguments (none for void). What making it throws becomes the
    /// future's error. Returns false when the future was fulfilled before. Throws: "no state" after a move.
    template <class... Args>
    bool setValue(Args&&... args)
    {
        if (!_state().claim()) return false;
        try {
            m_state->store(std::forward<Args>(args)...);
        } catch (...) {
            m_state->completeWithError(std::current_exception());
            return true;
        }
        m_state->complete();
        return true;
    }

    /// Ends the future with an error; returns false when it was fulfilled before. Throws: "no state" after a
    /// move.
    bool setError(std::exception_ptr error)
    {
        if (!_state().claim()) return false;
        m_state->completeWithError(std::move(error));
        return true;
    }

private:
    detail::State<T>& _state() const
    {
        if (!m_state) detail::throwNoState();
        return *m_state;
    }
    void _swap(Promise& other) noexcept { std::swap(m_state, other.m_state); }

    detail::StatePtr<detail::State<T>> m_state;
};

/// A future that holds its value already.
template <class T>
Future<std::decay_t<T>> makeReadyFuture(T&& value, ExecutorPtr executor = defaultExecutor())
{
    Promise<std::decay_t<T>> promise(std::move(executor));
    promise.setValue(std::forward<T>(value));
    return promise.getFuture();
}
inline Future<void> makeReadyFuture()
{
    Promise<void> promise;
    promise.setValue();
    return promise.getFuture();
}

/// A future that has failed already.
template <class T>
Future<T> makeFailedFuture(std::exception_ptr error, ExecutorPtr executor = defaultExecutor())
{
    Promise<T> promise(std::move(executor));
    promise.setError(std::move(error));
    return promise.getFuture();
}

} // namespace vesk::base
