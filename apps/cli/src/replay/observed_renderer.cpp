#include "observed_renderer.h"

#include "values.h"

#include <pxr/usd/usd/stage.h>
#include <vesk/base/error_handling.h>
#include <vesk/framework/usd_document/usd_document.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {
namespace {

using apps::Json;
using apps::jsonNumber;
using framework::usd_document::UsdDocument;
using namespace framework::hydra_renderer;

class ObservedRenderer final : public HydraRenderer
{
public:
    ObservedRenderer(std::shared_ptr<Observer> observer, std::unique_ptr<HydraRenderer> inner)
        : m_observer(std::move(observer)), m_inner(std::move(inner))
    {}

    void setDocument(const std::shared_ptr<UsdDocument>& document) override
    {
        _tell("setDocument", {document ? Json(document->getId()) : Json()});
        m_inner->setDocument(document);
    }
    void switchRenderer(const std::string& id,
                        const std::vector<usd::utils::Param<VtValue>>& settings) override
    {
        _tell("switchRenderer", {id, toJson(settings)});
        m_inner->switchRenderer(id, settings);
    }
    void setPresentationModeEnabled(bool enabled) override
    {
        _tell("setPresentationModeEnabled", {enabled});
        m_inner->setPresentationModeEnabled(enabled);
    }
    void setRenderSize(int width, int height) override
    {
        _tell("setRenderSize", {width, height});
        m_inner->setRenderSize(width, height);
    }
    void setCamera(const std::variant<GfCamera, SdfPath>& camera) override
    {
        const auto* path = std::get_if<SdfPath>(&camera);
        _tell("setCamera", {path ? toJson(*path) : apps::jsonCamera(std::get<GfCamera>(camera))});
        m_inner->setCamera(camera);
    }
    void setCameraFitPolicy(CameraUtilConformWindowPolicy policy) override
    {
        _tell("setCameraFitPolicy", {static_cast<int>(policy)});
        m_inner->setCameraFitPolicy(policy);
    }
    void setLighting(const usd::hydra_renderer::LightingInfo& lighting) override
    {
        _tell("setLighting", {toJson(lighting)});
        m_inner->setLighting(lighting);
    }
    void setTiledRenderWindow(const GfVec4i& window) override
    {
        _tell("setTiledRenderWindow", {toJson(window)});
        m_inner->setTiledRenderWindow(window);
    }
    void setCurrentTime(double time) override
    {
        _tell("setCurrentTime", {jsonNumber(time)});
        m_inner->setCurrentTime(time);
    }
    void setRenderProxyGeometry(bool enabled) override
    {
        _tell("setRenderProxyGeometry", {enabled});
        m_inner->setRenderProxyGeometry(enabled);
    }
    void setRenderSelectionVisualization(bool enabled) override
    {
        _tell("setRenderSelectionVisualization", {enabled});
        m_inner->setRenderSelectionVisualization(enabled);
    }
    void setSelectionPaths(const std::vector<SdfPath>& paths) override
    {
        _tell("setSelectionPaths", {toJson(paths)});
        m_inner->setSelectionPaths(paths);
    }
    void setSelectionColor(const GfVec4f& color) override
    {
        _tell("setSelectionColor", {toJson(color)});
        m_inner->setSelectionColor(color);
    }
    void setHighlightedPaths(const std::vector<SdfPath>& paths) override
    {
        _tell("setHighlightedPaths", {toJson(paths)});
        m_inner->setHighlightedPaths(paths);
    }
    void setHighlightColor(const GfVec4f& color) override
    {
        _tell("setHighlightColor", {toJson(color)});
        m_inner->setHighlightColor(color);
    }
    void setGridAboveColor(const GfVec4f& color) override
    {
        _tell("setGridAboveColor", {toJson(color)});
        m_inner->setGridAboveColor(color);
    }
    void setGridBelowColor(const GfVec4f& color) override
    {
        _tell("setGridBelowColor", {toJson(color)});
        m_inner->setGridBelowColor(color);
    }
    void setGridThickness(float thickness) override
    {
        _tell("setGridThickness", {jsonNumber(thickness)});
        m_inner->setGridThickness(thickness);
    }
    void setGridEnabled(bool enabled) override
    {
        _tell("setGridEnabled", {enabled});
        m_inner->setGridEnabled(enabled);
    }
    void setOutlineThickness(float thickness) override
    {
        _tell("setOutlineThickness", {jsonNumber(thickness)});
        m_inner->setOutlineThickness(thickness);
    }
    void setClearColor(const GfVec4f& color) override
    {
        _tell("setClearColor", {toJson(color)});
        m_inner->setClearColor(color);
    }
    void setColorCorrectionMode(const TfToken& mode) override
    {
        _tell("setColorCorrectionMode", {toJson(mode)});
        m_inner->setColorCorrectionMode(mode);
    }
    void setDrawMode(const TfToken& mode) override
    {
        _tell("setDrawMode", {toJson(mode)});
        m_inner->setDrawMode(mode);
    }
    void setPostProcessingDebugMode(const TfToken& mode) override
    {
        _tell("setPostProcessingDebugMode", {toJson(mode)});
        m_inner->setPostProcessingDebugMode(mode);
    }
    void setAfterRenderCallback(const std::function<void(bool)>& callback) override
    {
        _tell("setAfterRenderCallback", {callback ? "callback" : "none"});
        m_inner->setAfterRenderCallback(callback);
    }
    base::Future<PickingResult> singlePointPicking(float x, float y, float radius) override
    {
        _tell("singlePointPicking", {jsonNumber(x), jsonNumber(y), jsonNumber(radius)});
        return m_inner->singlePointPicking(x, y, radius);
    }
    base::Future<GfVec4f> colorPicking(const std::pair<float, float>& position,
                                       const TfToken& aovName) override
    {
        _tell("colorPicking",
              {Json::array({jsonNumber(position.first), jsonNumber(position.second)}), toJson(aovName)});
        return m_inner->colorPicking(position, aovName);
    }
    base::Future<void> captureFrame(const std::filesystem::path& path, const TfToken& aov, bool transparent,
                                    std::optional<GfVec4f> clearColor, int samples) override
    {
        _tell("captureFrame",
              {path.string(), toJson(aov), transparent, clearColor ? toJson(*clearColor) : Json(), samples});
        return m_inner->captureFrame(path, aov, transparent, clearColor, samples);
    }
    base::Future<void> captureFrames(const std::vector<AovCaptureRequest>& requests,
                                     bool transparent) override
    {
        Json list = Json::array();
        for (const AovCaptureRequest& request : requests) {
            list.push_back({{"path", request.path.string()},
                            {"aov", toJson(request.aov)},
                            {"clearColor", request.clearColor ? toJson(*request.clearColor) : Json()},
                            {"samples", request.samples}});
        }
        _tell("captureFrames", {std::move(list), transparent});
        return m_inner->captureFrames(requests, transparent);
    }
    base::Future<HydraRenderJobResult> renderFrame(const RenderParameters& parameters) override
    {
        Json aovs = Json::array();
        for (const TfToken& aov : parameters.aovs)
            aovs.push_back(toJson(aov));
        _tell("renderFrame", {{{"samples", parameters.samples},
                               {"untilConverged", parameters.untilConverged},
                               {"aovs", std::move(aovs)}}});
        return m_inner->renderFrame(parameters);
    }

private:
    void _tell(const char* operation, std::initializer_list<Json> arguments)
    {
        Json list = Json::array();
        for (const Json& argument : arguments)
            list.push_back(argument);
        m_observer->onCall(operation, std::move(list));
    }

    std::shared_ptr<Observer> m_observer;
    std::unique_ptr<HydraRenderer> m_inner;
};

} // namespace

void registerObservedRenderer(std::shared_ptr<Observer> observer, const std::string& rendererId)
{
    registerRenderer(kObservedRendererId, "Observed", [observer, rendererId](const RendererCreateInfo& info) {
        if (rendererId == kObservedRendererId) {
            throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument),
                                                  "a session cannot observe itself; choose another renderer");
        }
        auto inner = HydraRenderer::create(
            info.eventBus, info.document, info.hwContext, rendererId, info.settings, info.renderSize,
            info.viewportId, info.enableSceneMaterials, info.enableColorCorrection, info.enableAsyncRendering,
            info.progressCallback, info.afterRenderCallback);
        return std::make_unique<ObservedRenderer>(observer, std::move(inner));
    });
}

} // namespace vesk::cli::replay
