#include <vesk/renderers/recording/recording_renderer.h>

#include "recording_log_impl.h"

#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>
#include <vesk/framework/usd_document/usd_document.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::recording {

using namespace framework::hydra_renderer;
using framework::usd_document::UsdDocument;
using usd::hydra_renderer::LightingInfo;
using Settings = std::vector<usd::utils::Param<VtValue>>;
using Arguments = std::vector<RecordedArgument>;

namespace {

std::string idOf(const std::shared_ptr<UsdDocument>& document) { return document ? document->getId() : ""; }

} // namespace

/// Draws nothing and remembers every call in its log. It keeps no reference to the document.
class RecordingRenderer final : public HydraRenderer
{
public:
    RecordingRenderer(const RendererCreateInfo& info, std::shared_ptr<RecordingLog> log)
        : m_log(std::move(log)), m_impl(*m_log->m_impl), m_viewportId(info.viewportId)
    {
        _setAfterRender(info.afterRenderCallback);
        m_impl.note(Operation::Create, m_viewportId, [&] {
            return Arguments{{"document", idOf(info.document)},
                             {"rendererId", info.rendererId},
                             {"rendererSettings", info.settings},
                             {"renderSize", info.renderSize},
                             {"viewportId", static_cast<int>(info.viewportId)},
                             {"enableSceneMaterials", info.enableSceneMaterials},
                             {"enableColorCorrection", info.enableColorCorrection},
                             {"enableAsyncRendering", info.enableAsyncRendering},
                             {"progressCallback", static_cast<bool>(info.progressCallback)},
                             {"afterRenderCallback", static_cast<bool>(info.afterRenderCallback)}};
        });
    }

    ~RecordingRenderer() override
    {
        _dropFutures();
        try {
            m_impl.note(Operation::Destroy, m_viewportId, [] { return Arguments(); });
        } catch (...) {
            // An observer that throws cannot stop a destructor.
        }
    }

    void setDocument(const std::shared_ptr<UsdDocument>& document) override
    {
        m_impl.note(Operation::SetDocument, m_viewportId, [&] {
            return Arguments{{"document", idOf(document)}};
        });
    }
    void switchRenderer(const std::string& rendererId, const Settings& settings) override
    {
        m_impl.note(Operation::SwitchRenderer, m_viewportId, [&] {
            return Arguments{{"rendererId", rendererId}, {"settings", settings}};
        });
    }
    void setPresentationModeEnabled(bool v) override
    {
        _note(Operation::SetPresentationModeEnabled, "enabled", v);
    }
    void setRenderSize(int width, int height) override
    {
        m_impl.note(Operation::SetRenderSize, m_viewportId, [&] {
            return Arguments{{"width", width}, {"height", height}};
        });
    }
    void setCamera(const std::variant<GfCamera, SdfPath>& camera) override
    {
        m_impl.note(Operation::SetCamera, m_viewportId, [&] {
            return Arguments{{"camera", std::visit([](const auto& c) { return RecordedValue(c); }, camera)}};
        });
    }
    void setCameraFitPolicy(CameraUtilConformWindowPolicy policy) override
    {
        _note(Operation::SetCameraFitPolicy, "policy", static_cast<int>(policy));
    }
    void setLighting(const LightingInfo& v) override { _note(Operation::SetLighting, "lighting", v); }
    void setTiledRenderWindow(const GfVec4i& v) override
    {
        _note(Operation::SetTiledRenderWindow, "window", v);
    }
    void setCurrentTime(double v) override { _note(Operation::SetCurrentTime, "time", v); }
    void setRenderProxyGeometry(bool v) override { _note(Operation::SetRenderProxyGeometry, "enabled", v); }
    void setRenderSelectionVisualization(bool v) override
    {
        _note(Operation::SetRenderSelectionVisualization, "enabled", v);
    }
    void setSelectionPaths(const std::vector<SdfPath>& v) override
    {
        _note(Operation::SetSelectionPaths, "paths", v);
    }
    void setSelectionColor(const GfVec4f& v) override { _note(Operation::SetSelectionColor, "color", v); }
    void setHighlightedPaths(const std::vector<SdfPath>& v) override
    {
        _note(Operation::SetHighlightedPaths, "paths", v);
    }
    void setHighlightColor(const GfVec4f& v) override { _note(Operation::SetHighlightColor, "color", v); }
    void setGridAboveColor(const GfVec4f& v) override { _note(Operation::SetGridAboveColor, "color", v); }
    void setGridBelowColor(const GfVec4f& v) override { _note(Operation::SetGridBelowColor, "color", v); }
    void setGridThickness(float v) override { _note(Operation::SetGridThickness, "thickness", v); }
    void setGridEnabled(bool v) override { _note(Operation::SetGridEnabled, "enabled", v); }
    void setOutlineThickness(float v) override { _note(Operation::SetOutlineThickness, "thickness", v); }
    void setClearColor(const GfVec4f& v) override { _note(Operation::SetClearColor, "color", v); }
    void setColorCorrectionMode(const TfToken& v) override
    {
        _note(Operation::SetColorCorrectionMode, "mode", v);
    }
    void setDrawMode(const TfToken& v) override { _note(Operation::SetDrawMode, "mode", v); }
    void setPostProcessingDebugMode(const TfToken& v) override
    {
        _note(Operation::SetPostProcessingDebugMode, "mode", v);
    }
    void setAfterRenderCallback(const std::function<void(bool)>& callback) override
    {
        _setAfterRender(callback);
        _note(Operation::SetAfterRenderCallback, "callback", static_cast<bool>(callback));
    }

    base::Future<PickingResult> singlePointPicking(float x, float y, float radius) override
    {
        m_impl.note(Operation::SinglePointPicking, m_viewportId, [&] {
            return Arguments{{"x", x}, {"y", y}, {"radius", radius}};
        });
        return m_impl.request(m_impl.picks, this, PickingResult());
    }
    base::Future<GfVec4f> colorPicking(const std::pair<float, float>& position,
                                       const TfToken& aovName) override
    {
        m_impl.note(Operation::ColorPicking, m_viewportId, [&] {
            return Arguments{{"x", position.first}, {"y", position.second}, {"aovName", aovName}};
        });
        return m_impl.request(m_impl.colorPicks, this, GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
    }
    base::Future<void> captureFrame(const std::filesystem::path& path, const TfToken& aov,
                                    bool transparentBackground, std::optional<GfVec4f> clearColor,
                                    int samples) override
    {
        m_impl.note(Operation::CaptureFrame, m_viewportId, [&] {
            return Arguments{{"path", path},
                             {"aov", aov},
                             {"transparentBackground", transparentBackground},
                             {"clearColor", clearColor},
                             {"samples", samples}};
        });
        return _requestCapture();
    }
    base::Future<void> captureFrames(const std::vector<AovCaptureRequest>& requests,
                                     bool transparentBackground) override
    {
        m_impl.note(Operation::CaptureFrames, m_viewportId, [&] {
            return Arguments{{"requests", requests}, {"transparentBackground", transparentBackground}};
        });
        return _requestCapture();
    }
    base::Future<HydraRenderJobResult> renderFrame(const RenderParameters& parameters) override
    {
        _note(Operation::RenderFrame, "parameters", parameters);
        HydraRenderJobResult done;
        done.converged = true;
        return m_impl.request(m_impl.frames, this, done);
    }

private:
    template <class T>
    void _note(Operation operation, const char* name, const T& value)
    {
        m_impl.note(operation, m_viewportId, [&] { return Arguments{{name, value}}; });
    }

    base::Future<void> _requestCapture()
    {
        if (!m_impl.handFed) return base::makeReadyFuture();
        const std::lock_guard lock(m_impl.mutex);
        return m_impl.captures.add(this);
    }

    // What was replaced dies after the lock: its captures are the host's.
    void _setAfterRender(std::function<void(bool)> callback)
    {
        const std::lock_guard lock(m_impl.mutex);
        std::swap(m_impl.afterRender, callback);
    }

    // The promises die after the lock: ending a future calls others.
    void _dropFutures()
    {
        std::unique_lock lock(m_impl.mutex);
        const auto picks = m_impl.picks.takeOf(this);
        const auto colorPicks = m_impl.colorPicks.takeOf(this);
        const auto captures = m_impl.captures.takeOf(this);
        const auto frames = m_impl.frames.takeOf(this);
        lock.unlock();
    }

    std::shared_ptr<RecordingLog> m_log;
    RecordingLog::Impl& m_impl;
    unsigned int m_viewportId;
};

void registerRecordingRenderer(std::shared_ptr<RecordingLog> log)
{
    registerRenderer(
        kRendererId, "Recording (draws nothing)", [log = std::move(log)](const RendererCreateInfo& info) {
            return std::unique_ptr<HydraRenderer>(
                std::make_unique<RecordingRenderer>(info, log ? log : std::make_shared<RecordingLog>()));
        });
}

} // namespace vesk::renderers::recording
