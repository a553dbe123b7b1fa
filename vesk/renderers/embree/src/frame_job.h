#pragma once

#include "drawing.h"
#include "renderer_core.h"
#include "tile_tracer.h"

#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/hydra_render_job_result.h>
#include <vesk/framework/hydra_renderer/render_parameters.h>

#include <chrono>
#include <memory>

namespace vesk::renderers::embree {

/// One frame on its way: takes the scene, draws it pass by pass on the default pool and tells what came of
/// it. Each pass is a piece of work of its own, so that picks and other work get their turn in between.
class FrameJob : public PendingRequest, public std::enable_shared_from_this<FrameJob>
{
public:
    explicit FrameJob(std::shared_ptr<RendererCore> core);
    ~FrameJob() override;

    /// Begins; returns at once.
    void start();

protected:
    /// The settings to draw with, taken when the frame begins.
    virtual RendererState::Copy _settings() = 0;

    /// Whether what lies at the pixels' centres is wanted besides the colour.
    virtual bool _wantsGeometry(const FrameSettings& settings) const = 0;

    /// Whether the first image may be coarse, so that it comes fast.
    virtual bool _mayBeginCoarse() const { return false; }

    /// Whether what is being traced is not wanted any more; asked from any thread.
    virtual bool _isOutdated() const { return false; }

    /// Whether the frame is refined further; it may be asked to begin again.
    virtual bool _goesOn() { return true; }

    /// An image is there; false ends the frame.
    virtual bool _onImage(bool converged) = 0;

    /// The frame has ended with its last image.
    virtual void _finish(bool converged) = 0;
    virtual void _fail(std::exception_ptr error) = 0;

    const std::shared_ptr<RendererCore>& core() const { return m_core; }
    const FrameSettings& frameSettings() const { return m_copy.settings; }
    const RendererState::Copy& settingsCopy() const { return m_copy; }

    /// The film with outlines and debug pictures drawn.
    Film finishedFilm() const;
    /// Samples per pixel of the newest image; 0 for a coarse one.
    int samplesDone() const { return m_samplesDone; }

    /// Begins again with the newest settings.
    void restart();

private:
    void _prepare(const PulledScene& pulled);
    void _postPass();
    void _runPass();
    int _nextPassSamples() const;
    void _traceCoarse();
    bool _trace(int first, int last, int block);
    bool _afterPass();
    bool _giveUpPass();
    std::vector<std::uint8_t> _marks() const;
    void _end(std::exception_ptr error);
    template <class F>
    void _guarded(F&& step);

    std::shared_ptr<RendererCore> m_core;
    RendererState::Copy m_copy;
    std::unique_ptr<FrameView> m_view;
    Film m_film;
    std::vector<Tile> m_tiles;
    int m_samplesDone = 0;
    int m_block = 1; ///< of the image before the first sample, 1 for none
    bool m_hasImage = false;
    bool m_cancelled = false;
    bool m_restarting = false;
};

/// A frame for the host's window.
class WindowFrame final : public FrameJob
{
public:
    WindowFrame(std::shared_ptr<RendererCore> core, framework::hydra_renderer::RenderParameters parameters,
                bool refines);

    base::Future<framework::hydra_renderer::HydraRenderJobResult> future() const
    {
        return m_promise.getFuture();
    }
    void abandon() override;

protected:
    RendererState::Copy _settings() override;
    bool _wantsGeometry(const FrameSettings& settings) const override;
    bool _mayBeginCoarse() const override;
    bool _isOutdated() const override;
    bool _goesOn() override;
    bool _onImage(bool converged) override;
    void _finish(bool converged) override;
    void _fail(std::exception_ptr error) override;

private:
    framework::hydra_renderer::RenderParameters m_parameters;
    bool m_refines;
    int m_restarts = 0;
    std::uint64_t m_frameIndex = 0;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    base::Promise<framework::hydra_renderer::HydraRenderJobResult> m_promise;
};

/// A frame that is written to files.
class CaptureFrame final : public FrameJob
{
public:
    /// \param copy the settings at the time of the request
    CaptureFrame(std::shared_ptr<RendererCore> core, RendererState::Copy copy,
                 std::vector<framework::hydra_renderer::AovCaptureRequest> requests);

    base::Future<void> future() const { return m_promise.getFuture(); }
    void abandon() override;

protected:
    RendererState::Copy _settings() override;
    bool _wantsGeometry(const FrameSettings& settings) const override;
    bool _onImage(bool converged) override;
    void _finish(bool converged) override;
    void _fail(std::exception_ptr error) override;

private:
    void _write();

    RendererState::Copy m_captured;
    std::vector<framework::hydra_renderer::AovCaptureRequest> m_requests;
    base::Promise<void> m_promise;
};

} // namespace vesk::renderers::embree
