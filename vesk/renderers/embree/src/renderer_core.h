#pragma once

#include "renderer_state.h"
#include "sample_rate.h"

#include <atomic>
#include <deque>
#include <exception>
#include <memory>
#include <set>

namespace vesk::renderers::embree {

class FrameJob;

/// Something that a host asked for and whose future has not ended. Thread: any.
class PendingRequest
{
public:
    virtual ~PendingRequest() = default;

    /// Ends the future with "broken promise" unless it has ended.
    virtual void abandon() = 0;
};

/// What a renderer and the work that it started share; it lives as long as any of them. Frames and captures
/// are drawn one after another, picks in between. Thread: any.
class RendererCore : public std::enable_shared_from_this<RendererCore>
{
public:
    RendererCore(unsigned int viewportId, std::function<bool(int, float, bool)> progress);
    ~RendererCore();

    RendererState state;
    HostCallbacks callbacks;

    /// Shows another document, or nothing.
    void setDocument(const std::shared_ptr<framework::usd_document::UsdDocument>& document);

    /// Queues a frame or a capture.
    void addFrame(std::shared_ptr<FrameJob> job);

    /// Tells that a frame's future has ended; where it was the drawn one the next one begins.
    void frameEnded(const FrameJob* job);

    /// Whether another frame waits behind the drawn one.
    bool frameIsWaiting() const;

    /// How long samples take. \param colors whether they are shaded
    SampleRate& sampleRate(bool colors) { return colors ? m_colorRate : m_geometryRate; }

    /// Remembers a pick so that its future ends when the renderer is destroyed.
    void addRequest(const std::shared_ptr<PendingRequest>& request);
    void requestEnded(const std::shared_ptr<PendingRequest>& request);

    /// Takes the scene for a set of settings.
    static base::Future<PulledScene> pull(const RendererState::Copy& copy);

    /// The camera of the settings, or the one that was read at its path; the last one that could be read
    /// where the path names none any more. Throws: `Exception` where there was never one.
    PXR_NS::GfCamera cameraOf(const FrameSettings& settings, const PulledScene& pulled);

    /// Sends a `FrameRenderedEvent` on the bus of the document that is shown and calls the host's callback.
    void announce(const std::shared_ptr<DocumentScene>& document, std::uint64_t frameIndex, bool converged);

    std::uint64_t nextFrameIndex() { return ++m_frameCount; }

    /// Ends every future with "broken promise" and stops what is under way.
    void close();
    bool isClosed() const { return m_closed; }

private:
    void _startNext();

    const unsigned int m_viewportId;
    std::shared_ptr<BuiltScenes> m_built;
    std::atomic<bool> m_closed{false};
    std::atomic<std::uint64_t> m_frameCount{0};
    SampleRate m_colorRate;
    SampleRate m_geometryRate;

    mutable std::mutex m_mutex; // guards what follows; no call goes out while it is held
    std::deque<std::shared_ptr<FrameJob>> m_waiting;
    std::shared_ptr<FrameJob> m_drawn;
    std::set<std::shared_ptr<PendingRequest>> m_requests;
    std::optional<PXR_NS::GfCamera> m_lastCamera;
};

} // namespace vesk::renderers::embree
