#pragma once

#include "drawing.h"
#include "renderer_core.h"
#include "tile_tracer.h"

#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/hydra_render_job_result.h>
#include <vesk/framework/hydra_renderer/render_parameters.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

namespace vesk::renderers::embree {

/// One frame on its way: takes the scene, draws it pass by pass on the default pool and tells what came of
/// it. A pass that nobody wants any more is left after the tiles in hand; what is shown then is the last
/// image, refined as far as the pass came.
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

    /// What of the pixels will be read.
    virtual FilmParts _wantedParts(const FrameSettings& settings) const = 0;

    /// Whether somebody waits for the first image.
    virtual bool _isUrgent() const { return false; }

    /// Whether the first image may be coarse, so that it comes fast.
    virtual bool _mayBeginCoarse() const { return false; }

    /// Whether what is being traced is not wanted any more; asked from any thread for every tile.
    virtual bool _isOutdated() const { return false; }

    /// Whether the frame is refined further; it may be asked to begin again.
    virtual bool _goesOn() { return true; }

    /// An image is there; false ends the frame.
    virtual bool _onImage(bool converged) = 0;

    /// The frame has ended with its last image.
    virtual void _finish(bool converged) = 0;
    virtual void _fail(std::exception_ptr error) = 0;

    const std::shared_ptr<RendererCore>& core() const { return m_core; }
    const FrameSettings& frameSettings() const { return m_now.copy.settings; }
    const RendererState::Copy& settingsCopy() const { return m_now.copy; }

    /// The last image with outlines and debug pictures drawn, in full size.
    std::shared_ptr<const Film> finishedFilm() const;

    /// One output of the last image, in full size.
    framework::hydra_renderer::AovBuffer readOutput(Output output) const;

    /// Samples per pixel of the last image; 0 for a coarse one.
    int samplesDone() const { return m_now.samples; }

    /// Samples that the newest pass took, of all its pixels.
    std::int64_t passSamples() const { return m_passSamples; }

    /// Begins again with the newest settings.
    void restart();

private:
    /// One picture on its way, from the settings that it shows to its last image.
    struct Drawing
    {
        RendererState::Copy copy;
        std::unique_ptr<FrameView> view;
        FilmParts parts;
        Film film;       ///< the last image
        int block = 1;   ///< of `film`
        int samples = 0; ///< of every pixel of `film`; 0 for a coarse one
        bool hasImage = false;
    };

    /// What is being traced.
    struct Pass
    {
        int first = 0;
        int last = 1;
        int block = 1;
        Film* film = nullptr;
        std::vector<Tile> tiles;
        std::chrono::steady_clock::time_point begin;
    };

    void _pull();
    void _prepare(const PulledScene& pulled);
    bool _endsInFavourOfNext();
    void _beginPass();
    void _planPass();
    void _traceTile(std::size_t tile);
    bool _isOver();
    void _endPass(std::exception_ptr error);
    void _takeImage();
    bool _afterPass();
    void _giveUpPass();
    void _endWith(bool converged);
    std::shared_ptr<const Film> _debuggedFilm() const;
    std::vector<std::uint8_t> _marks(const Film& film) const;
    void _end(std::exception_ptr error);
    template <class F>
    void _guarded(F&& step);

    std::shared_ptr<RendererCore> m_core;
    Drawing m_now;
    std::optional<Drawing> m_former; ///< before a restart, until there is an image again
    Pass m_pass;
    Film m_next; ///< takes the place of a coarse image when it is whole
    std::atomic<bool> m_isLeft{false};
    std::atomic<std::int64_t> m_passSamples{0};
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
    FilmParts _wantedParts(const FrameSettings& settings) const override;
    bool _isUrgent() const override { return true; }
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
    FilmParts _wantedParts(const FrameSettings& settings) const override;
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
