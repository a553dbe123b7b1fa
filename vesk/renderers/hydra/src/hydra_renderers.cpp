#include <vesk/renderers/hydra/hydra_renderers.h>

#include "frame_job.h"
#include "picking.h"

#include <vesk/base/error_handling.h>
#include <vesk/base/logging.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <pxr/usdImaging/usdImagingGL/engine.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

using namespace framework::hydra_renderer;
using framework::usd_document::UsdDocument;
using picture::FrameSettings;
using usd::hydra_renderer::LightingInfo;
using Settings = std::vector<usd::utils::Param<VtValue>>;

// A delegate draws a converged picture by itself; more samples are more drawings.
FrameSettings startSettings(const RendererCreateInfo& info)
{
    FrameSettings settings = picture::initialSettings(info);
    settings.samples = 1;
    return settings;
}

EngineSetup setupOf(const RendererCreateInfo& info)
{
    EngineSetup setup;
    setup.rendererId = info.rendererId;
    setup.hostContext = info.hwContext;
    return setup;
}

bool isNumber(const VtValue& value)
{
    return value.IsHolding<float>() || value.IsHolding<double>() || value.IsHolding<int>();
}

double numberOf(const VtValue& value)
{
    if (value.IsHolding<float>()) return value.UncheckedGet<float>();
    if (value.IsHolding<double>()) return value.UncheckedGet<double>();
    return value.UncheckedGet<int>();
}

[[noreturn]] void failToSwitch(const std::string& from, const std::string& to)
{
    std::string known;
    for (const std::string& id : hydraRendererIds())
        known += (known.empty() ? "" : ", ") + id;
    const std::string text =
        "the renderer '" + from + "' cannot become '" + to + "'; Hydra's render delegates here: " + known;
    throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument), text.c_str());
}

/// A renderer on one of Hydra's delegates: setters write into the core's settings, requests become jobs.
class HydraDelegateRenderer final : public HydraRenderer
{
public:
    explicit HydraDelegateRenderer(const RendererCreateInfo& info)
        : m_core(std::make_shared<RendererCore>(info.viewportId, info.progressCallback, setupOf(info),
                                                startSettings(info))),
          m_rendererId(info.rendererId),
          m_refines(info.enableAsyncRendering)
    {
        m_core->callbacks.setAfterRender(info.afterRenderCallback);
        m_core->setDelegate(info.rendererId, _applySettings(info.settings));
        m_core->setDocument(info.document);
    }

    ~HydraDelegateRenderer() override { m_core->close(); }

    void setDocument(const std::shared_ptr<UsdDocument>& document) override { m_core->setDocument(document); }

    void switchRenderer(const std::string& rendererId, const Settings& settings) override
    {
        const std::string id = rendererId.empty() ? kStormRendererId : rendererId;
        const std::vector<std::string> known = hydraRendererIds();
        std::string former;
        {
            const std::lock_guard lock(m_idMutex);
            former = m_rendererId;
            if (std::find(known.begin(), known.end(), id) != known.end()) m_rendererId = id;
        }
        if (std::find(known.begin(), known.end(), id) == known.end()) failToSwitch(former, id);
        m_core->setDelegate(id, _applySettings(settings));
    }

    void setPresentationModeEnabled(bool enabled) override
    {
        m_core->change([=](FrameSettings& s) { s.presentation = enabled; });
    }
    void setRenderSize(int width, int height) override
    {
        m_core->change([=](FrameSettings& s) { s.size = GfVec2i(width, height); });
    }
    void setCamera(const std::variant<GfCamera, SdfPath>& camera) override
    {
        m_core->change([&](FrameSettings& s) { s.camera = camera; });
    }
    void setCameraFitPolicy(CameraUtilConformWindowPolicy policy) override
    {
        m_core->change([=](FrameSettings& s) { s.fitPolicy = policy; });
    }
    void setLighting(const LightingInfo& lighting) override
    {
        m_core->change([&](FrameSettings& s) { s.lighting = lighting; });
    }
    void setTiledRenderWindow(const GfVec4i& window) override
    {
        m_core->change([&](FrameSettings& s) { s.window = window; });
    }
    void setCurrentTime(double time) override
    {
        m_core->change([=](FrameSettings& s) { s.time = time; });
    }
    void setRenderProxyGeometry(bool enabled) override
    {
        m_core->change([=](FrameSettings& s) { s.proxyPurpose = enabled; });
    }
    void setRenderSelectionVisualization(bool enabled) override
    {
        m_core->change([=](FrameSettings& s) { s.showSelection = enabled; });
    }
    void setSelectionPaths(const std::vector<SdfPath>& paths) override
    {
        m_core->change([&](FrameSettings& s) { s.selection = paths; });
    }
    void setSelectionColor(const GfVec4f& color) override
    {
        m_core->change([&](FrameSettings& s) { s.selectionColor = color; });
    }
    void setHighlightedPaths(const std::vector<SdfPath>& paths) override
    {
        m_core->change([&](FrameSettings& s) { s.highlighted = paths; });
    }
    void setHighlightColor(const GfVec4f& color) override
    {
        m_core->change([&](FrameSettings& s) { s.highlightColor = color; });
    }
    void setGridAboveColor(const GfVec4f& color) override
    {
        m_core->change([&](FrameSettings& s) { s.gridAboveColor = color; });
    }
    void setGridBelowColor(const GfVec4f& color) override
    {
        m_core->change([&](FrameSettings& s) { s.gridBelowColor = color; });
    }
    void setGridThickness(float thickness) override
    {
        m_core->change([=](FrameSettings& s) { s.gridThickness = thickness; });
    }
    void setGridEnabled(bool enabled) override
    {
        m_core->change([=](FrameSettings& s) { s.gridEnabled = enabled; });
    }
    void setOutlineThickness(float thickness) override
    {
        m_core->change([=](FrameSettings& s) { s.outlineThickness = thickness; });
    }
    void setClearColor(const GfVec4f& color) override
    {
        m_core->change([&](FrameSettings& s) { s.clearColor = color; });
    }
    void setColorCorrectionMode(const TfToken& mode) override
    {
        m_core->change([&](FrameSettings& s) { s.colorCorrection = mode == "sRGB"; });
    }
    void setDrawMode(const TfToken& mode) override
    {
        m_core->change([&](FrameSettings& s) { s.drawMode = picture::drawModeOf(mode); });
    }
    void setPostProcessingDebugMode(const TfToken& mode) override
    {
        m_core->change([&](FrameSettings& s) { s.debugMode = picture::debugModeOf(mode); });
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
        SettingsCopy copy = m_core->copy();
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
    // "samples": drawings of a converged picture; "complexity": how finely subdivided surfaces are drawn. The
    // others are the delegate's own and are returned.
    std::map<std::string, VtValue> _applySettings(const Settings& settings)
    {
        std::map<std::string, VtValue> others;
        for (const auto& setting : settings) {
            if (setting.name == "samples" && setting.value.IsHolding<int>()) {
                const int samples = std::clamp(setting.value.UncheckedGet<int>(), 1, picture::kMostSamples);
                m_core->change([=](FrameSettings& s) { s.samples = samples; });
            } else if (setting.name == "complexity" && isNumber(setting.value)) {
                const double value = numberOf(setting.value);
                m_core->setComplexity(std::isfinite(value) ? static_cast<float>(std::clamp(value, 1.0, 2.0))
                                                           : 1.0f);
            } else {
                others.insert_or_assign(setting.name, setting.value);
            }
        }
        return others;
    }

    std::shared_ptr<RendererCore> m_core;
    std::mutex m_idMutex;
    std::string m_rendererId;
    bool m_refines;
};

} // namespace

std::vector<std::string> hydraRendererIds()
{
    std::vector<std::string> ids;
    for (const TfToken& id : UsdImagingGLEngine::GetRendererPlugins())
        ids.push_back(id.GetString());
    std::stable_partition(ids.begin(), ids.end(),
                          [](const std::string& id) { return id == kStormRendererId; });
    return ids;
}

void registerHydraRenderers()
{
    for (const std::string& id : hydraRendererIds()) {
        const std::string name = UsdImagingGLEngine::GetRendererDisplayName(TfToken(id));
        registerRenderer(id, "Hydra: " + name, [](const RendererCreateInfo& info) {
            return std::unique_ptr<HydraRenderer>(std::make_unique<HydraDelegateRenderer>(info));
        });
    }
}

} // namespace vesk::renderers::hydra
