#pragma once

#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace vesk::framework::usd_viewport::tests {

PXR_NAMESPACE_USING_DIRECTIVE
using namespace vesk::framework::hydra_renderer;

/// What all test renderers of one fixture have been told, and what they shall do.
///
/// Every call adds one line to `calls` and to the common `timeline`: the operation and its arguments as text.
/// Values that a line cannot show whole stand in lists of their own.
struct RendererLog
{
    explicit RendererLog(std::vector<std::string>& commonTimeline) : timeline(commonTimeline) {}

    std::vector<std::string>& timeline;
    std::vector<std::string> calls;
    std::vector<std::variant<GfCamera, SdfPath>> cameras;
    std::vector<vesk::usd::hydra_renderer::LightingInfo> lightings;
    std::vector<std::vector<SdfPath>> paths;
    std::vector<std::vector<vesk::usd::utils::Param<VtValue>>> settings;
    std::vector<std::shared_ptr<usd_document::UsdDocument>> documents;
    std::vector<AovCaptureRequest> captureRequests;
    std::function<void(bool)> afterRenderCallback;
    std::deque<RendererCreateInfo> created;
    std::deque<vesk::base::Promise<PickingResult>> picks;
    std::deque<vesk::base::Promise<GfVec4f>> colors;
    std::deque<vesk::base::Promise<void>> captures;
    std::deque<vesk::base::Promise<HydraRenderJobResult>> frames;
    std::vector<std::thread::id> threads;
    int alive = 0;
    int destroyed = 0;

    /// Runs inside every call, after it has been written down; what it throws leaves the call.
    std::function<void(const std::string& operation)> onCall;

    /// Runs when a renderer is destroyed.
    std::function<void()> onDestroyed;

    /// The lines since the last call of this, oldest first.
    std::vector<std::string> take() { return std::exchange(calls, {}); }

    const GfCamera& lastCamera() const { return std::get<GfCamera>(cameras.back()); }

    template <class... Args>
    void record(const std::string& operation, const Args&... arguments)
    {
        std::ostringstream line;
        line << operation;
        ((line << ' ' << arguments), ...);
        {
            const std::lock_guard<std::mutex> lock(mutex);
            calls.push_back(line.str());
            timeline.push_back("renderer " + operation);
            threads.push_back(std::this_thread::get_id());
        }
        if (onCall) onCall(operation);
    }

    std::mutex mutex;
};

/// Draws nothing and writes down every call. Its futures are fulfilled by the test.
class TestRenderer : public HydraRenderer
{
public:
    explicit TestRenderer(std::shared_ptr<RendererLog> log) : m_log(std::move(log)) { ++m_log->alive; }
    ~TestRenderer() override
    {
        --m_log->alive;
        ++m_log->destroyed;
        m_log->timeline.push_back("renderer destroyed");
        if (m_log->onDestroyed) m_log->onDestroyed();
    }

    void setDocument(const std::shared_ptr<usd_document::UsdDocument>& document) override
    {
        m_log->documents.push_back(document);
        m_log->record("setDocument");
    }
    void switchRenderer(const std::string& id,
                        const std::vector<vesk::usd::utils::Param<VtValue>>& all) override
    {
        m_log->settings.push_back(all);
        m_log->record("switchRenderer", id);
    }
    void setPresentationModeEnabled(bool on) override { m_log->record("setPresentationModeEnabled", on); }
    void setRenderSize(int width, int height) override { m_log->record("setRenderSize", width, height); }
    void setCamera(const std::variant<GfCamera, SdfPath>& camera) override
    {
        {
            const std::lock_guard<std::mutex> lock(m_log->mutex);
            m_log->cameras.push_back(camera);
        }
        const auto* path = std::get_if<SdfPath>(&camera);
        m_log->record("setCamera", path ? path->GetString() : "camera");
    }
    void setCameraFitPolicy(CameraUtilConformWindowPolicy policy) override
    {
        m_log->record("setCameraFitPolicy", static_cast<int>(policy));
    }
    void setLighting(const vesk::usd::hydra_renderer::LightingInfo& lighting) override
    {
        m_log->lightings.push_back(lighting);
        m_log->record("setLighting");
    }
    void setTiledRenderWindow(const GfVec4i& window) override
    {
        m_log->record("setTiledRenderWindow", window[0], window[1], window[2], window[3]);
    }
    void setCurrentTime(double time) override { m_log->record("setCurrentTime", time); }
    void setRenderProxyGeometry(bool on) override { m_log->record("setRenderProxyGeometry", on); }
    void setRenderSelectionVisualization(bool on) override
    {
        m_log->record("setRenderSelectionVisualization", on);
    }
    void setSelectionPaths(const std::vector<SdfPath>& paths) override
    {
        m_log->paths.push_back(paths);
        m_log->record("setSelectionPaths", paths.size());
    }
    void setSelectionColor(const GfVec4f& color) override { _color("setSelectionColor", color); }
    void setHighlightedPaths(const std::vector<SdfPath>& paths) override
    {
        m_log->paths.push_back(paths);
        m_log->record("setHighlightedPaths", paths.size());
    }
    void setHighlightColor(const GfVec4f& color) override { _color("setHighlightColor", color); }
    void setGridAboveColor(const GfVec4f& color) override { _color("setGridAboveColor", color); }
    void setGridBelowColor(const GfVec4f& color) override { _color("setGridBelowColor", color); }
    void setGridThickness(float thickness) override { m_log->record("setGridThickness", thickness); }
    void setGridEnabled(bool on) override { m_log->record("setGridEnabled", on); }
    void setOutlineThickness(float thickness) override { m_log->record("setOutlineThickness", thickness); }
    void setClearColor(const GfVec4f& color) override { _color("setClearColor", color); }
    void setColorCorrectionMode(const TfToken& mode) override
    {
        m_log->record("setColorCorrectionMode", mode.GetString());
    }
    void setDrawMode(const TfToken& mode) override { m_log->record("setDrawMode", mode.GetString()); }
    void setPostProcessingDebugMode(const TfToken& mode) override
    {
        m_log->record("setPostProcessingDebugMode", mode.GetString());
    }
    void setAfterRenderCallback(const std::function<void(bool)>& callback) override
    {
        m_log->afterRenderCallback = callback;
        m_log->record("setAfterRenderCallback", static_cast<bool>(callback));
    }
    vesk::base::Future<PickingResult> singlePointPicking(float x, float y, float radius) override
    {
        m_log->record("singlePointPicking", x, y, radius);
        return m_log->picks.emplace_back().getFuture();
    }
    vesk::base::Future<GfVec4f> colorPicking(const std::pair<float, float>& position,
                                             const TfToken& aov) override
    {
        m_log->record("colorPicking", position.first, position.second, aov.GetString());
        return m_log->colors.emplace_back().getFuture();
    }
    vesk::base::Future<void> captureFrame(const std::filesystem::path& path, const TfToken& aov,
                                          bool transparent, std::optional<GfVec4f> clear,
                                          int samples) override
    {
        m_log->record("captureFrame", path.string(), aov.GetString(), transparent,
                      clear ? _text(*clear) : "none", samples);
        return m_log->captures.emplace_back().getFuture();
    }
    vesk::base::Future<void> captureFrames(const std::vector<AovCaptureRequest>& requests,
                                           bool transparent) override
    {
        m_log->captureRequests = requests;
        m_log->record("captureFrames", requests.size(), transparent);
        return m_log->captures.emplace_back().getFuture();
    }
    vesk::base::Future<HydraRenderJobResult> renderFrame(const RenderParameters& parameters) override
    {
        m_log->record("renderFrame", parameters.samples, parameters.untilConverged);
        return m_log->frames.emplace_back().getFuture();
    }

private:
    static std::string _text(const GfVec4f& color)
    {
        std::ostringstream text;
        text << color[0] << ',' << color[1] << ',' << color[2] << ',' << color[3];
        return text.str();
    }
    void _color(const char* operation, const GfVec4f& color) { m_log->record(operation, _text(color)); }

    std::shared_ptr<RendererLog> m_log;
};

} // namespace vesk::framework::usd_viewport::tests
