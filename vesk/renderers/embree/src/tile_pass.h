#pragma once

#include <vesk/base/executor.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

namespace vesk::renderers::embree {

/// Where work goes that somebody waits for: picks and the first images of frames. Refinement that is under
/// way in any renderer makes room for it after the tile in hand. Thread: any.
const base::ExecutorPtr& urgentExecutor();

/// Traces the tiles of one pass on the threads of the default pool. Nobody waits for it: the thread that ends
/// the last tile goes on with what comes after the pass.
class TilePass : public std::enable_shared_from_this<TilePass>
{
public:
    struct Steps
    {
        std::function<void(std::size_t tile)> trace; ///< on several threads at once
        std::function<bool()> isOver;                ///< true: the tiles that have not begun are left out
        std::function<void(std::exception_ptr)> whenDone; ///< called once, with what a tile threw
    };

    /// Starts a pass. It makes room for urgent work after each tile; one that is not urgent itself also makes
    /// room for anything else every 20 ms.
    /// \param tiles how many there are
    static void run(std::size_t tiles, bool isUrgent, Steps steps);

private:
    TilePass(std::size_t tiles, bool isUrgent, Steps steps);

    void _post();
    void _work();
    void _traceTile(std::size_t tile);
    bool _makesRoom(std::chrono::steady_clock::time_point begin) const;

    const std::size_t m_tiles;
    const bool m_isUrgent;
    Steps m_steps;
    std::atomic<std::size_t> m_next{0};
    std::atomic<std::size_t> m_ended{0};
    std::atomic<bool> m_isOver{false};
    std::mutex m_errorMutex;
    std::exception_ptr m_error;
};

} // namespace vesk::renderers::embree
