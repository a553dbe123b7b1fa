#include <vesk/renderers/embree/embree_renderer.h>

#include "drawing.h"
#include "frame_job.h"
#include "picking.h"
#include "renderer_core.h"

#include <vesk/base/error_handling.h>
#include <vesk/base/logging.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <array>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

using namespace framework::hydra_renderer;
using framework::usd_document::UsdDocument;
using usd::hydra_renderer::LightingInfo;
using Settings = std::vector<usd::utils::Param<VtValue>>;

/// The CPU renderer: setters write into the core's state, requests become jobs of the core.
class EmbreeRenderer final : public HydraRenderer
{
public:
    explicit EmbreeRenderer(const RendererCreateInfo& info)
        : m_core(std::make_shared<RendererCore>(info.viewportId, info.progressCallback)),
          m_refines(info.enableAsyncRendering)
    {
        m_core->callbacks.setAfterRender(info.afterRenderCallback);
        m_core->state.change([&](FrameSettings& s) { s = initialSettings(info); });
        _applySettings(info.settings);
        m_core->setDocument(info.document);
    }

    ~EmbreeRenderer() override { m_core->close(); }

    void setDocument(const std::shared_ptr<UsdDocument>& document) override { m_core->setDocument(document); }

    void switchRenderer(const std::string& rendererId, const Settings& settings) override
    {
        if (!rendererId.empty() && rendererId != kRendererId) {
            const std::string text =
                "the renderer 'embree' cannot become '" + rendererId + "'; it knows only itself: embree";
            throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument),
                                                  text.c_str());
        }
        _applySettings(settings);
    }

    void setPresentationModeEnabled(bool enabled) override
    {
        m_core->state.change([=](FrameSettings& s) { s.presentation = enabled; });
    }
    void setRenderSize(int width, int height) override
    {
        m_core->state.change([=](FrameSettings& s) { s.size = GfVec2i(width, height); });
    }
    void setCamera(const std::variant<GfCamera, SdfPath>& camera) override
    {
        m_core->state.change([&](FrameSettings& s) { s.camera = camera; });
    }
    void setCameraFitPolicy(CameraUtilConformWindowPolicy policy) override
    {
        m_core->state.change([=](FrameSettings& s) { s.fitPolicy = policy; });
    }
    void setLighting(const LightingInfo& lighting) override
    {
        m_core->state.change([&](FrameSettings& s) { s.lighting = lighting; });
    }
    void setTiledRenderWindow(const GfVec4i& window) override
    {
        m_core->state.change([&](FrameSettings& s) { s.window = window; });
    }
    void setCurrentTime(double time) override
    {
        m_core->state.change([=](FrameSettings& s) { s.time = time; });
    }
    void setRenderProxyGeometry(bool enabled) override
    {
        m_core->state.change([=](FrameSettings& s) { s.proxyPurpose = enabled; });
    }
    void setRenderSelectionVisualization(bool enabled) override
    {
        m_core->state.change([=](FrameSettings& s) { s.showSelection = enabled; });
    }
    void setSelectionPaths(const std::vector<SdfPath>& paths) override
    {
        m_core->state.change([&](FrameSettings& s) { s.selection = paths; });
    }
    void setSelectionColor(const GfVec4f& color) override
    {
        m_core->state.change([&](FrameSettings& s) { s.selectionColor = color; });
    }
    void setHighlightedPaths(const std::vector<SdfPath>& paths) override
    {
        m_core->state.change([&](FrameSettings& s) { s.highlighted = paths; });
    }
    void setHighlightColor(const GfVec4f& color) override
    {
        m_core->state.change([&](FrameSettings& s) { s.highlightColor = color; });
    }
    void setGridAboveColor(const GfVec4f& color) override
    {
        m_core->state.change([&](FrameSettings& s) { s.gridAboveColor = color; });
    }
    void setGridBelowColor(const GfVec4f& color) override
    {
        m_core->state.change([&](FrameSettings& s) { s.gridBelowColor = color; });
    }
    void setGridThickness(float thickness) override
    {
        m_core->state.change([=](FrameSettings& s) { s.gridThickness = thickness; });
    }
    void setGridEnabled(bool enabled) override
    {
        m_core->state.change([=](FrameSettings& s) { s.gridEnabled = enabled; });
    }
    void setOutlineThickness(float thickness) override
    {
        m_core->state.change([=](FrameSettings& s) { s.outlineThickness = thickness; });
    }
    void setClearColor(const GfVec4f& color) override
    {
        m_core->state.change([&](FrameSettings& s) { s.clearColor = color; });
    }
    void setColorCorrectionMode(const TfToken& mode) override
    {
        m_core->state.change([&](FrameSettings& s) { s.colorCorrection = mode == "sRGB"; });
    }
    void setDrawMode(const TfToken& mode) override
    {
        m_core->state.change([&](FrameSettings& s) { s.drawMode = drawModeOf(mode); });
    }
    void setPostProcessingDebugMode(const TfToken& mode) override
    {
        m_core->state.change([&](FrameSettings& s) { s.debugMode = debugModeOf(mode); });
    }
    void setAfterRenderCallback(const std::function<void(bool)>& callback) override
    {
        m_core->callbacks.setAfterRender(callback);
    }

    base::Future<PickingResult> singlePointPicking(float x, float y, float radius) override
    {
        return startPick(m_core, x, y, radius);
    }
    base::Future<GfVec4f> colorPicking(const std::pair<float, float>& position,
                                       const TfToken& aovName) override
    {
        return startColorPick(m_core, position.first, position.second, aovName);
    }

    base::Future<void> captureFrame(const std::filesystem::path& path, const TfToken& aov,
                                    bool transparentBackground, std::optional<GfVec4f> clearColor,
                                    int samples) override
    {
        AovCaptureRequest request;
        request.path = path;
        request.aov = aov;
        request.clearColor = clearColor;
        request.samples = samples;
        return captureFrames({request}, transparentBackground);
    }

    base::Future<void> captureFrames(const std::vector<AovCaptureRequest>& requests,
                                     bool transparentBackground) override
    {
        RendererState::Copy copy = m_core->state.copy();
        copy.settings.transparentBackground = transparentBackground;
        auto frame = std::make_shared<CaptureFrame>(m_core, std::move(copy), requests);
        base::Future<void> future = frame->future();
        m_core->addFrame(std::move(frame));
        return future;
    }

    base::Future<HydraRenderJobResult> renderFrame(const RenderParameters& parameters) override
    {
        auto frame = std::make_shared<WindowFrame>(m_core, parameters, m_refines);
        base::Future<HydraRenderJobResult> future = frame->future();
        m_core->addFrame(std::move(frame));
        return future;
    }

private:
    // "samples": samples per pixel of a converged picture. Others are left alone.
    void _applySettings(const Settings& settings)
    {
        for (const auto& setting : settings) {
            if (setting.name != "samples" || !setting.value.IsHolding<int>()) continue;
            const int samples = std::clamp(setting.value.UncheckedGet<int>(), 1, kMostSamples);
            m_core->state.change([=](FrameSettings& s) { s.samples = samples; });
        }
    }

    std::shared_ptr<RendererCore> m_core;
    bool m_refines;
};

} // namespace

void registerEmbreeRenderer()
{
    registerRenderer(kRendererId, "Embree (CPU)", [](const RendererCreateInfo& info) {
        return std::unique_ptr<HydraRenderer>(std::make_unique<EmbreeRenderer>(info));
    });
}

} // namespace vesk::renderers::embree
