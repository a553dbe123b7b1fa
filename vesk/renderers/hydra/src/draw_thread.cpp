#include "draw_thread.h"

#include <vesk/base/thread_pool.h>

#include <cstdlib>

namespace vesk::renderers::hydra {
namespace {

// Never destroyed as a static: when the process exits, the work in hand ends and what is queued is abandoned,
// while OpenUSD and the graphics driver are still there.
base::ThreadPool* makeThread()
{
    static base::ThreadPool* made = nullptr;
    made = new base::ThreadPool(1);
    std::atexit([] { delete std::exchange(made, nullptr); });
    return made;
}

} // namespace

const base::ExecutorPtr& drawThread(base::Priority priority)
{
    static const std::array<base::ExecutorPtr, 3>& lanes = *[] {
        base::ThreadPool* pool = makeThread();
        return new std::array<base::ExecutorPtr, 3>{pool->executor(base::Priority::Low),
                                                    pool->executor(base::Priority::Normal),
                                                    pool->executor(base::Priority::High)};
    }();
    return lanes[static_cast<std::size_t>(priority)];
}

} // namespace vesk::renderers::hydra
