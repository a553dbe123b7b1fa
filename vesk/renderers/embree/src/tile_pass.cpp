#include "tile_pass.h"

#include <vesk/base/thread_pool.h>

#include <algorithm>
#include <utility>

namespace vesk::renderers::embree {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kSlice = std::chrono::milliseconds(20); // of refinement before other work gets its turn

/// How much urgent work waits for a thread, of all renderers.
std::atomic<int>& urgentCount()
{
    static std::atomic<int> count{0};
    return count;
}

/// One piece of urgent work while it waits.
class UrgentTicket
{
public:
    UrgentTicket() { ++urgentCount(); }
    UrgentTicket(UrgentTicket&& other) noexcept : m_isHeld(std::exchange(other.m_isHeld, false)) {}
    ~UrgentTicket() { release(); }
    UrgentTicket& operator=(UrgentTicket&&) = delete;

    void release()
    {
        if (std::exchange(m_isHeld, false)) --urgentCount();
    }

private:
    bool m_isHeld = true;
};

class UrgentExecutor final : public base::Executor
{
public:
    void post(base::Work work) override
    {
        base::defaultExecutor(base::Priority::High)
            ->post(base::Work([work = std::move(work), ticket = UrgentTicket()]() mutable {
                ticket.release();
                work.run();
            }));
    }
};

} // namespace

const base::ExecutorPtr& urgentExecutor()
{
    // Never destroyed: futures that outlive this library's statics may carry it.
    static const auto* executor = new base::ExecutorPtr(std::make_shared<UrgentExecutor>());
    return *executor;
}

TilePass::TilePass(std::size_t tiles, bool isUrgent, Steps steps)
    : m_tiles(tiles), m_isUrgent(isUrgent), m_steps(std::move(steps))
{}

void TilePass::run(std::size_t tiles, bool isUrgent, Steps steps)
{
    const std::shared_ptr<TilePass> pass(new TilePass(tiles, isUrgent, std::move(steps)));
    if (tiles == 0) {
        pass->m_steps.whenDone(nullptr);
        return;
    }
    const std::size_t threads = base::ThreadPool::defaultPool().threadCount();
    for (std::size_t i = 1; i < std::min(threads, tiles); ++i)
        pass->_post();
    // The first image loses no time on the way to another thread.
    if (isUrgent) {
        pass->_work();
    } else {
        pass->_post();
    }
}

void TilePass::_post()
{
    const auto& executor = m_isUrgent ? urgentExecutor() : base::defaultExecutor(base::Priority::Low);
    executor->post(base::Work([self = shared_from_this()] { self->_work(); }));
}

void TilePass::_work()
{
    const auto begin = Clock::now();
    for (;;) {
        const std::size_t tile = m_next.fetch_add(1, std::memory_order_relaxed);
        if (tile >= m_tiles) return;
        _traceTile(tile);
        if (m_ended.fetch_add(1, std::memory_order_acq_rel) + 1 == m_tiles) {
            m_steps.whenDone(m_error);
            return;
        }
        if (_makesRoom(begin)) {
            _post();
            return;
        }
    }
}

void TilePass::_traceTile(std::size_t tile)
{
    // Each "not yet" begins one tile, whatever another thread learns meanwhile.
    if (m_isOver.load(std::memory_order_relaxed) || m_steps.isOver()) {
        m_isOver = true;
        return;
    }
    try {
        m_steps.trace(tile);
    } catch (...) {
        const std::lock_guard lock(m_errorMutex);
        if (!m_error) m_error = std::current_exception();
        m_isOver = true;
    }
}

bool TilePass::_makesRoom(Clock::time_point begin) const
{
    if (urgentCount().load(std::memory_order_relaxed) > 0) return true;
    return !m_isUrgent && Clock::now() - begin > kSlice;
}

} // namespace vesk::renderers::embree
