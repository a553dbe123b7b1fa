#pragma once

#include <vesk/base/executor.h>

#include <GLFW/glfw3.h>

#include <deque>
#include <mutex>
#include <utility>

/// Brings work to the thread of the window: continuations that name this executor run between two input
/// events.
class UiLoop final : public vesk::base::Executor
{
public:
    /// Takes work from any thread and wakes the window's thread. A closed loop drops it.
    void post(vesk::base::Work work) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_closed) return;
        m_queue.push_back(std::move(work));
        glfwPostEmptyEvent();
    }

    /// Waits for input or work and runs both. Thread: the window's.
    void runOnce()
    {
        glfwWaitEvents();
        std::deque<vesk::base::Work> queue;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            queue.swap(m_queue);
        }
        for (vesk::base::Work& work : queue)
            work.run();
    }

    /// Takes no more work; what is queued is dropped. Called before the window system goes.
    void close()
    {
        std::deque<vesk::base::Work> dropped;
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
        dropped.swap(m_queue);
    }

private:
    std::mutex m_mutex;
    std::deque<vesk::base::Work> m_queue;
    bool m_closed = false;
};
