#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include <vesk/base/export.h>

namespace vesk::base {

/// One piece of work that an executor can queue without allocating. Either run() or abandon() is called,
/// once; both end the life of the node.
class VESK_BASE_EXPORT WorkNode
{
public:
    /// Does the work.
    virtual void run() noexcept = 0;

    /// The work will never run: whoever waits for it is told "broken promise".
    virtual void abandon() noexcept = 0;

    /// For the queue that holds the node.
    WorkNode* next = nullptr;

protected:
    WorkNode() = default;
    WorkNode(const WorkNode&) = delete;
    WorkNode& operator=(const WorkNode&) = delete;
    ~WorkNode() = default;
};

namespace detail {
/// Logs what a bare piece of work threw: nobody else could hear of it.
VESK_BASE_EXPORT void logLostException() noexcept;
} // namespace detail

/// Owns one piece of work that has not run. Destroying it abandons the work.
class Work
{
public:
    Work() = default;
    /// Takes over a node.
    explicit Work(WorkNode* node) : m_node(node) {}

    /// Wraps a callable. An exception that leaves it is logged.
    template <class F, class = std::enable_if_t<std::is_invocable_v<std::decay_t<F>&>>>
    explicit Work(F&& function);

    /// Takes over other work, which is empty afterwards.
    Work(Work&& other) noexcept : m_node(other.release()) {}
    /// Takes over other work; the work before is abandoned.
    Work& operator=(Work&& other) noexcept
    {
        Work(std::move(other)).swap(*this);
        return *this;
    }
    ~Work()
    {
        if (m_node) m_node->abandon();
    }

    /// True while there is work.
    explicit operator bool() const { return m_node != nullptr; }

    /// Runs the work and leaves this empty; does nothing when empty.
    void run() noexcept
    {
        if (WorkNode* node = release()) node->run();
    }

    /// Gives the node to a queue of its own, which then calls run() or abandon() on it.
    WorkNode* release() noexcept { return std::exchange(m_node, nullptr); }

    /// Exchanges the work of two objects.
    void swap(Work& other) noexcept { std::swap(m_node, other.m_node); }

private:
    WorkNode* m_node = nullptr;
};

/// Where continuations and other work run: a pool, a queue that a test drains by hand, a host's own loop.
class VESK_BASE_EXPORT Executor
{
public:
    virtual ~Executor();

    /// Takes the work and runs it later. An executor that is closing destroys the work instead; work must not
    /// be lost in any other way. Thread: any.
    virtual void post(Work work) = 0;
};

using ExecutorPtr = std::shared_ptr<Executor>;

/// Higher lanes are served first; ageing serves the lower ones from time to time, so none waits for ever.
enum class Priority
{
    Low,
    Normal,
    High
};

/// The executor of a lane of the process-wide default pool. Thread: any.
VESK_BASE_EXPORT const ExecutorPtr& defaultExecutor(Priority priority = Priority::Normal);

/// Runs work at once on the thread that completes the future; work posted by such work runs after it, not
/// inside it. For short continuations that must not hop threads. Thread: any.
VESK_BASE_EXPORT const ExecutorPtr& inlineExecutor();

template <class F, class>
Work::Work(F&& function)
{
    class CallableNode final : public WorkNode
    {
    public:
        explicit CallableNode(F&& callable) : m_callable(std::forward<F>(callable)) {}
        void run() noexcept override
        {
            try {
                m_callable();
            } catch (...) {
                detail::logLostException();
            }
            delete this;
        }
        void abandon() noexcept override { delete this; }

    private:
        std::decay_t<F> m_callable;
    };
    m_node = new CallableNode(std::forward<F>(function));
}

} // namespace vesk::base
