#pragma once

#include <atomic>
#include <future>

namespace vesk::tests {

/// A gate that one thread opens and others wait at: holds a thread at an exact point of a test without time.
///
/// Thread: any.
class Gate
{
public:
    /// Lets every present and future waiter through. A second call does nothing.
    void open()
    {
        if (!m_opened.test_and_set()) m_promise.set_value();
    }

    /// Blocks until the gate is open.
    void wait() const { m_future.wait(); }

private:
    std::atomic_flag m_opened = ATOMIC_FLAG_INIT;
    std::promise<void> m_promise;
    std::shared_future<void> m_future = m_promise.get_future().share();
};

} // namespace vesk::tests
