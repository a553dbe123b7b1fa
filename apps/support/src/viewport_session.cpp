#include <apps/support/viewport_session.h>

#include <apps/support/errors.h>
#include <apps/support/interruption.h>

#include <pxr/base/tf/token.h>

#include <vesk/base/thread_pool.h>
#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <algorithm>
#include <mutex>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::apps {

using framework::usd_viewport::LightingModel;
using framework::usd_viewport::ViewDirection;
using framework::usd_viewport::ViewportModel;
using usd::utils::ProjectionType;

/// What the renderer's callback reaches; it may still be called while the session dies.
struct ViewportSession::Shared
{
    std::mutex mutex;
    PictureProgress progress;
};

namespace {

void requireRenderer(const std::string& id)
{
    const auto known = framework::hydra_renderer::registeredRendererIds();
    if (id.empty() || std::find(known.begin(), known.end(), id) != known.end()) return;
    std::string names;
    for (const std::string& name : known)
        names += (names.empty() ? "" : ", ") + name;
    throw UsageError("there is no renderer '" + id + "'; this build has: " + names);
}

ProjectionType projectionType(const std::string& name)
{
    return name == "orthographic" ? ProjectionType::Orthographic : ProjectionType::Perspective;
}

ViewDirection viewDirection(const std::string& name)
{
    const auto& names = viewNames();
    const auto found = std::find(names.begin(), names.end(), name);
    return static_cast<ViewDirection>(found - names.begin());
}

} // namespace

ViewportSession::ViewportSession(SceneSession& scene, const ViewportArguments& arguments)
    : m_scene(scene), m_shared(std::make_shared<Shared>())
{
    requireRenderer(arguments.renderer);
    const int size[2] = {arguments.camera.size[0], arguments.camera.size[1]};
    auto onProgress = [shared = m_shared](int samples, float fraction, bool) {
        std::lock_guard<std::mutex> lock(shared->mutex);
        if (shared->progress) shared->progress(samples, fraction);
        return !Interruption::requested();
    };
    m_model = std::make_unique<ViewportModel>(
        scene.document(), nullptr, arguments.renderer, std::vector<usd::utils::Param<VtValue>>{}, size, size,
        arguments.camera.devicePixelRatio, true, true, false, onProgress, nullptr);
    _applyLighting(arguments);
}

ViewportSession::~ViewportSession() = default;

void ViewportSession::_applyLighting(const ViewportArguments& arguments)
{
    LightingModel lighting;
    lighting.setDefaultLightingEnabled(arguments.lights == Lights::Default);
    lighting.setSceneLightingEnabled(arguments.lights == Lights::Scene);
    if (!arguments.domeTexture.empty()) lighting.setDomeLightTexturePath(arguments.domeTexture);
    m_model->setLighting(lighting);
}

void ViewportSession::frame(ViewDirection direction, const std::string& projection,
                            const std::vector<SdfPath>& paths)
{
    m_model->checkCameraUpAxis().get();
    m_model->frameScene(projectionType(projection), direction, paths).get();
}

void ViewportSession::lookThrough(const SdfPath& cameraPath)
{
    // A copy at the viewport's time: following the prim would read it at the default time.
    m_model->copyCameraFromPath(cameraPath.GetString(), true, std::string()).get();
}

void ViewportSession::applyCamera(const CameraArguments& arguments)
{
    const SdfPath camera = arguments.camera.empty() ? SdfPath() : m_scene.requireCamera(arguments.camera);
    const std::vector<SdfPath> paths = m_scene.requirePrims(arguments.paths);
    showTime(arguments.time.value_or(m_scene.startTime()));
    if (camera.IsEmpty())
        frame(viewDirection(arguments.view), arguments.projection, paths);
    else
        lookThrough(camera);
}

void ViewportSession::showTime(double time)
{
    if (time == m_model->currentTime()) return;
    m_model->setCurrentTime(time);
    // The new bounds are taken up by a continuation that nobody holds: behind this read the document is done
    // with them, and behind the pool's silence so is the model.
    m_scene.read<bool>("wait", [](const UsdStagePtr&) { return true; });
    base::ThreadPool::defaultPool().waitUntilIdle();
}

void ViewportSession::capture(const std::filesystem::path& file, const std::string& aov, bool transparent,
                              std::optional<GfVec4f> clearColor, int samples)
{
    Interruption::check();
    try {
        m_model->captureHydraFrame(file, TfToken(aov), transparent, clearColor, samples).get();
    } catch (const std::exception& error) {
        Interruption::check();
        throw JobError(oneLine(error.what()));
    }
}

void ViewportSession::captureAll(const std::vector<Output>& outputs, bool transparent,
                                 std::optional<GfVec4f> clearColor, int samples)
{
    Interruption::check();
    std::vector<framework::hydra_renderer::AovCaptureRequest> requests;
    for (const Output& output : outputs) {
        framework::hydra_renderer::AovCaptureRequest request;
        request.path = output.file;
        request.aov = TfToken(output.aov);
        request.clearColor = clearColor;
        request.samples = samples;
        requests.push_back(std::move(request));
    }
    try {
        m_model->captureHydraFrames(requests, transparent).get();
    } catch (const std::exception& error) {
        Interruption::check();
        throw JobError(oneLine(error.what()));
    }
}

framework::hydra_renderer::PickingResult ViewportSession::pick(const std::array<float, 2>& at, float radius)
{
    try {
        return m_model->singlePointPicking(at[0], at[1], radius).get();
    } catch (const std::exception& error) {
        Interruption::check();
        throw JobError(oneLine(error.what()));
    }
}

void ViewportSession::setProgress(PictureProgress progress)
{
    std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->progress = std::move(progress);
}

} // namespace vesk::apps
