#include <vesk/base/thread_pool.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>

namespace vesk::base {

namespace {

/// One loop, shared by the caller and its helpers. A helper that starts late finds no piece left and touches
/// nothing of the caller's.
struct Loop
{
    Loop(std::size_t elementCount, std::size_t pieceLength,
         const std::function<void(std::size_t, std::size_t)>& f)
        : count(elementCount),
          grain(pieceLength),
          pieces((elementCount + pieceLength - 1) / pieceLength),
          body(f)
    {}

    void runPieces() noexcept
    {
        for (;;) {
            const std::size_t piece = nextPiece.fetch_add(1, std::memory_order_relaxed);
            if (piece >= pieces) return;
            if (!failed.load(std::memory_order_relaxed)) runPiece(piece);
            if (finishedPieces.fetch_add(1, std::memory_order_acq_rel) + 1 == pieces) {
                std::lock_guard lock(mutex);
                allFinished.notify_all();
            }
        }
    }

    void waitUntilFinished()
    {
        std::unique_lock lock(mutex);
        allFinished.wait(lock, [this] { return finishedPieces.load(std::memory_order_acquire) == pieces; });
    }

    const std::size_t count;
    const std::size_t grain;
    const std::size_t pieces;
    std::exception_ptr error;

private:
    void runPiece(std::size_t piece) noexcept
    {
        const std::size_t first = piece * grain;
        try {
            body(first, std::min(count, first + grain));
        } catch (...) {
            if (!failed.exchange(true)) error = std::current_exception();
        }
    }

    const std::function<void(std::size_t, std::size_t)>& body;
    std::atomic<std::size_t> nextPiece{0};
    std::atomic<std::size_t> finishedPieces{0};
    std::atomic<bool> failed{false};
    std::mutex mutex;
    std::condition_variable allFinished;
};

} // namespace

void parallelFor(std::size_t count, std::size_t grain,
                 const std::function<void(std::size_t first, std::size_t last)>& body)
{
    if (count == 0) return;
    grain = std::clamp<std::size_t>(grain, 1, count);
    if (grain == count) {
        body(0, count);
        return;
    }
    const auto loop = std::make_shared<Loop>(count, grain, body);
    const std::size_t helpers =
        std::min<std::size_t>(ThreadPool::defaultPool().threadCount(), loop->pieces - 1);
    for (std::size_t i = 0; i < helpers; ++i)
        defaultExecutor(Priority::High)->post(Work([loop] { loop->runPieces(); }));
    loop->runPieces();
    loop->waitUntilFinished();
    if (loop->error) std::rethrow_exception(loop->error);
}

} // namespace vesk::base
