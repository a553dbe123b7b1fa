#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace vesk::framework::usd_document {

/// How far a document is loaded.
struct LoadProgress
{
    enum class Phase
    {
        Checking,        ///< Looks at the file.
        ReadingLayers,   ///< Reads the root layer and its sublayers; done counts layers.
        Composing,       ///< Builds the stage.
        LoadingPayloads, ///< Loads payloads; done and total count them.
        Finished,
    };

    Phase phase = Phase::Checking;
    std::size_t done = 0;
    std::size_t total = 0; ///< What is known so far; it can grow while layers name further layers.
    std::string item;      ///< The layer or prim that is loaded now.
};

/// Asks a load to stop. Copies ask the same load. Thread: any.
class LoadCancellation
{
public:
    void cancel() const noexcept { m_cancelled->store(true); }
    bool isCancelled() const noexcept { return m_cancelled->load(); }

private:
    std::shared_ptr<std::atomic<bool>> m_cancelled = std::make_shared<std::atomic<bool>>(false);
};

/// How a file is opened.
struct OpenOptions
{
    /// Loads payloads as well; without it they stay unloaded.
    bool loadPayloads = true;

    /// Told on the loading thread before each step. Must not throw.
    std::function<void(const LoadProgress&)> progress;

    /// The load looks at it before each step; a step itself (one layer, one payload) is not interrupted.
    LoadCancellation cancellation;
};

} // namespace vesk::framework::usd_document
