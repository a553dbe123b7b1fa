#pragma once

#include "render_buffer_reading.h"
#include "renderer_core.h"
#include "stage_turn.h"

#include <pxr/base/tf/token.h>
#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/hydra_render_job_result.h>
#include <vesk/framework/hydra_renderer/render_parameters.h>
#include <vesk/renderers/picture/film.h>
#include <vesk/renderers/picture/outputs.h>

#include <chrono>

namespace vesk::renderers::hydra {

/// One frame on its way: reads the stage where it changed, is drawn pass by pass on the drawing thread, is
/// finished on the default pool and tells what came of it. Thread: any.
class FrameJob : public PendingRequest, public std::enable_shared_from_this<FrameJob>
{
public:
    explicit FrameJob(std::shared_ptr<RendererCore> core);
    ~FrameJob() override;

    /// Begins; returns at once.
    void start();

protected:
    /// The settings to draw with, taken when the frame begins.
    virtual SettingsCopy _settings() = 0;
    /// What is read of the picture; nothing where nobody looks at it.
    virtual std::vector<picture::Output> _outputs() const = 0;
    /// The part of the picture that is read.
    virtual PixelRect _rect() const { return {PXR_NS::GfVec2i(0, 0), m_copy.settings.size}; }
    /// Before other drawings that wait?
    virtual base::Priority _priority() const { return base::Priority::Low; }

    /// An image is there; false ends the frame.
    virtual bool _onImage(bool converged) = 0;

    /// The frame has ended with its last image.
    virtual void _finish(bool converged) = 0;
    virtual void _fail(std::exception_ptr error) = 0;

    /// The job takes no part in anything any more.
    virtual void _ended();

    const std::shared_ptr<RendererCore>& core() const { return m_core; }
    const picture::FrameSettings& frameSettings() const { return m_copy.settings; }
    const SettingsCopy& settingsCopy() const { return m_copy; }
    int samplesDone() const { return m_samplesDone; }

    /// The film with grid, outlines and debug pictures drawn.
    picture::Film finishedFilm() const;

    /// Begins again with the newest settings.
    void restart() { m_restarting = true; }

private:
    void _begin();
    void _prepare(const StageFacts& facts);
    void _postPass();
    void _draw(const PXR_NS::UsdStageRefPtr& stage, StageTurn* turn, const std::function<void()>& onRead);
    void _drawWithEngine(const PXR_NS::UsdStageRefPtr& stage, StageTurn* turn,
                         const std::function<void()>& onRead);
    void _drawPixels(Engine& engine);
    void _nameOrPass(StageTurn* turn);
    void _fillGeometry();
    void _fillDepthAndNormal(std::size_t pixel);
    void _afterPass();
    void _drawNothing();
    bool _showsGrid() const;
    std::vector<std::uint8_t> _marks() const;
    void _drawGrid(picture::Film& film) const;
    void _end(std::exception_ptr error);
    template <class F>
    void _guarded(F&& step);
    template <class F>
    void _inTurn(const char* label, F work);

    std::shared_ptr<RendererCore> m_core;
    SettingsCopy m_copy;
    bool m_isRead = false; ///< somebody looks at the picture
    PixelRect m_rect;
    StageFacts m_facts;
    DrawRequest m_request;
    PXR_NS::GfCamera m_camera;
    PXR_NS::GfMatrix4d m_toWorld{1.0};
    picture::Film m_film;
    RawPixels m_raw;
    std::vector<float> m_depth;
    std::vector<HitNames> m_names; ///< of the film's placements
    int m_samplesDone = 0;
    bool m_progressing = false;
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
    SettingsCopy _settings() override;
    std::vector<picture::Output> _outputs() const override;
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
    CaptureFrame(std::shared_ptr<RendererCore> core, SettingsCopy copy,
                 std::vector<framework::hydra_renderer::AovCaptureRequest> requests);

    base::Future<void> future() const { return m_promise.getFuture(); }
    void abandon() override;

protected:
    SettingsCopy _settings() override;
    std::vector<picture::Output> _outputs() const override;
    bool _onImage(bool converged) override;
    void _finish(bool converged) override;
    void _fail(std::exception_ptr error) override;

private:
    SettingsCopy m_captured;
    std::vector<framework::hydra_renderer::AovCaptureRequest> m_requests;
    base::Promise<void> m_promise;
};

/// A frame of which one pixel is read.
class PixelFrame final : public FrameJob
{
public:
    /// \param copy the settings at the time of the request
    PixelFrame(std::shared_ptr<RendererCore> core, SettingsCopy copy, const PXR_NS::GfVec2i& pixel,
               picture::Output output);

    base::Future<PXR_NS::GfVec4f> future() const { return m_promise.getFuture(); }
    void abandon() override;

protected:
    SettingsCopy _settings() override;
    std::vector<picture::Output> _outputs() const override;
    PixelRect _rect() const override { return {m_pixel, PXR_NS::GfVec2i(1, 1)}; }
    base::Priority _priority() const override { return base::Priority::High; }
    bool _onImage(bool converged) override;
    void _finish(bool converged) override;
    void _fail(std::exception_ptr error) override;
    void _ended() override;

private:
    SettingsCopy m_captured;
    PXR_NS::GfVec2i m_pixel;
    picture::Output m_output;
    base::Promise<PXR_NS::GfVec4f> m_promise;
};

} // namespace vesk::renderers::hydra
