#include <vesk/base/executor.h>

#include <exception>

#include <vesk/base/logging.h>

namespace vesk::base {

Executor::~Executor() = default;

void detail::logLostException() noexcept
{
    try {
        throw;
    } catch (const std::exception& exception) {
        VESK_LOG_ERROR("An exception left work that nobody waits for: {}", exception.what());
    } catch (...) {
        VESK_LOG_ERROR("An exception left work that nobody waits for: {}",
                       "something that is no std::exception");
    }
}

namespace {

class InlineExecutor final : public Executor
{
public:
    void post(Work work) override
    {
        Queue& queue = t_queue;
        WorkNode* node = work.release();
        if (!node) return;
        queue.append(*node);
        if (queue.running) return;
        queue.running = true;
        while (WorkNode* next = queue.takeFirst())
            next->run();
        queue.running = false;
    }

private:
    struct Queue
    {
        WorkNode* first = nullptr;
        WorkNode* last = nullptr;
        bool running = false;

        void append(WorkNode& node) noexcept
        {
            node.next = nullptr;
            (last ? last->next : first) = &node;
            last = &node;
        }
        WorkNode* takeFirst() noexcept
        {
            WorkNode* node = first;
            if (!node) return nullptr;
            first = node->next;
            if (!first) last = nullptr;
            return node;
        }
    };

    static thread_local Queue t_queue;
};

thread_local InlineExecutor::Queue InlineExecutor::t_queue;

} // namespace

const ExecutorPtr& inlineExecutor()
{
    // Never destroyed, and an aliasing pointer: copying it counts nothing.
    static const ExecutorPtr& executor = *new ExecutorPtr(std::shared_ptr<void>(), new InlineExecutor);
    return executor;
}

} // namespace vesk::base
