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
    /// The steps of a load, in their order.
    enum class Phase
    {
        Checking,        ///< Looks at the file.
        ReadingLayers,   ///< Reads the root layer and its sublayers; done counts layers.
        Composing,       ///< Builds the stage.
        LoadingPayloads, ///< Loads payloads; done and total count them.
        Finished,        ///< The document is there.
    };

    Phase phase = Phase::Checking; ///< The step that goes on.
    std::size_t done = 0;          ///< What the step has done so far.
    std::size_t total = 0;         ///< What is known so far; it can grow while layers name further layers.
    std::string item;              ///< The layer or prim that is loaded now.
};

/// Asks a load to stop. Copies ask the same load. Thread: any.
class LoadCancellation
{
public:
    /// Asks the load to stop; it ends with the error Cancelled at its next step.
    void cancel() const noexcept { m_cancelled->store(true); }
    /// Whether cancel() was called on this object or a copy.
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
