#pragma once

#include "hydra_scene.h"

#include <vesk/renderers/picture/frame_settings.h>
#include <vesk/renderers/picture/host_callbacks.h>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>

namespace vesk::renderers::hydra {

class FrameJob;

/// Something that a host asked for and whose future has not ended. Thread: any.
class PendingRequest
{
public:
    virtual ~PendingRequest() = default;

    /// Ends the future with "broken promise" unless it has ended.
    virtual void abandon() = 0;
};

/// The settings of one drawing with the number of changes that made them.
struct SettingsCopy
{
    picture::FrameSettings settings;
    float complexity = 1.0f;
    std::uint64_t serial = 0;
    std::shared_ptr<HydraScene> scene; ///< null when the renderer was destroyed
};

/// What a renderer and the work that it started share; it lives as long as any of them. Frames and captures
/// are drawn one after another, picks in between. Thread: any.
class RendererCore : public std::enable_shared_from_this<RendererCore>
{
public:
    RendererCore(unsigned int viewportId, std::function<bool(int, float, bool)> progress, EngineSetup setup,
                 picture::FrameSettings settings);

    picture::HostCallbacks callbacks;

    SettingsCopy copy() const;
    std::uint64_t serial() const;

    /// Changes the settings under the lock.
    template <class F>
    void change(F&& f)
    {
        const std::lock_guard lock(m_mutex);
        f(m_settings);
        ++m_serial;
    }
    void setComplexity(float complexity);

    /// Shows another document, or nothing.
    void setDocument(const std::shared_ptr<framework::usd_document::UsdDocument>& document);

    /// Draws with another delegate from now on.
    void setDelegate(const std::string& rendererId, const std::map<std::string, PXR_NS::VtValue>& settings);

    /// Queues a frame or a capture.
    void addFrame(std::shared_ptr<FrameJob> job);

    /// Tells that the drawn frame's future has ended; the next one begins.
    void frameEnded(const FrameJob* job);
    bool frameIsWaiting() const;

    /// Remembers a request so that its future ends when the renderer is destroyed.
    void addRequest(const std::shared_ptr<PendingRequest>& request);
    void requestEnded(const std::shared_ptr<PendingRequest>& request);

    /// The camera of the settings, or the one that was read at its path; the last one that could be read
    /// where the path names none any more. Throws: `Exception` where there was never one.
    PXR_NS::GfCamera cameraOf(const picture::FrameSettings& settings, const StageFacts& facts);

    /// Sends a `FrameRenderedEvent` on the bus of the document that is shown and calls the host's callback.
    void announce(const HydraScene& scene, std::uint64_t frameIndex, bool converged);

    std::uint64_t nextFrameIndex() { return ++m_frameCount; }

    /// Ends every future with "broken promise" and stops what is under way.
    void close();
    bool isClosed() const { return m_closed; }

private:
    void _startNext();
    void _show(std::shared_ptr<HydraScene> scene);

    const unsigned int m_viewportId;
    std::atomic<bool> m_closed{false};
    std::atomic<std::uint64_t> m_frameCount{0};

    mutable std::mutex m_mutex; // guards what follows; no call goes out while it is held
    picture::FrameSettings m_settings;
    float m_complexity = 1.0f;
    std::uint64_t m_serial = 0;
    EngineSetup m_setup;
    std::shared_ptr<HydraScene> m_scene;
    std::deque<std::shared_ptr<FrameJob>> m_waiting;
    std::shared_ptr<FrameJob> m_drawn;
    std::set<std::shared_ptr<PendingRequest>> m_requests;
    std::optional<PXR_NS::GfCamera> m_lastCamera;
};

} // namespace vesk::renderers::hydra
