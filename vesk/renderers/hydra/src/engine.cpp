#include "engine.h"

#include <vesk/base/error_handling.h>
#include <vesk/base/thread_pool.h>

#include <pxr/base/gf/rect2i.h>
#include <pxr/imaging/cameraUtil/framing.h>
#include <pxr/imaging/garch/glApi.h>
#include <pxr/imaging/hd/engine.h>
#include <pxr/imaging/hd/renderDelegate.h>
#include <pxr/imaging/hd/renderIndex.h>
#include <pxr/imaging/hd/rprim.h>
#include <pxr/imaging/hd/task.h>
#include <pxr/imaging/hd/tokens.h>
#include <pxr/imaging/hdx/pickTask.h>
#include <pxr/imaging/hdx/taskController.h>
#include <pxr/imaging/hdx/tokens.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {
namespace {

using picture::DrawMode;

/// Tells when Hydra has read the scene: all tasks are prepared after that and before anything is drawn.
class StageReadTask final : public HdTask
{
public:
    explicit StageReadTask(std::function<void()> onRead) : HdTask(SdfPath()), m_onRead(std::move(onRead)) {}

    void Sync(HdSceneDelegate*, HdTaskContext*, HdDirtyBits* dirtyBits) override
    {
        *dirtyBits = HdChangeTracker::Clean;
    }
    void Prepare(HdTaskContext*, HdRenderIndex*) override { m_onRead(); }
    void Execute(HdTaskContext*) override {}

private:
    std::function<void()> m_onRead;
};

UsdImagingGLDrawMode hydraModeOf(DrawMode mode)
{
    switch (mode) {
    case DrawMode::Points:
        return UsdImagingGLDrawMode::DRAW_POINTS;
    case DrawMode::Wireframe:
        return UsdImagingGLDrawMode::DRAW_WIREFRAME;
    case DrawMode::WireframeOnSurface:
        return UsdImagingGLDrawMode::DRAW_WIREFRAME_ON_SURFACE;
    case DrawMode::ShadedFlat:
        return UsdImagingGLDrawMode::DRAW_SHADED_FLAT;
    case DrawMode::GeomOnly:
        return UsdImagingGLDrawMode::DRAW_GEOM_ONLY;
    case DrawMode::GeomFlat:
        return UsdImagingGLDrawMode::DRAW_GEOM_FLAT;
    case DrawMode::GeomSmooth:
        return UsdImagingGLDrawMode::DRAW_GEOM_SMOOTH;
    default:
        return UsdImagingGLDrawMode::DRAW_SHADED_SMOOTH;
    }
}

bool leavesMaterialsOut(DrawMode mode)
{
    return mode == DrawMode::GeomOnly || mode == DrawMode::GeomFlat || mode == DrawMode::GeomSmooth;
}

GfRect2i dataWindowOf(const picture::FrameSettings& settings)
{
    const GfVec4i& w = settings.window;
    const GfRect2i whole(GfVec2i(0, 0), settings.size[0], settings.size[1]);
    if (w[2] <= 0 || w[3] <= 0) return whole;
    return GfRect2i(GfVec2i(w[0], w[1]), w[2], w[3]).GetIntersection(whole);
}

bool isId(const TfToken& output)
{
    return output == HdAovTokens->primId || output == HdAovTokens->instanceId ||
           output == HdAovTokens->elementId;
}

// The outermost native instance that a prim of the stage lies in, or nothing.
SdfPath outermostInstance(const UsdStageRefPtr& stage, const SdfPath& path)
{
    for (const SdfPath& prefix : path.GetPrefixes()) {
        const UsdPrim prim = stage->GetPrimAtPath(prefix);
        if (prim && prim.IsInstance()) return prefix;
    }
    return {};
}

} // namespace

Engine::Engine(const std::string& rendererId, bool gpuEnabled)
    : UsdImagingGLEngine(HdDriver(), TfToken(rendererId), gpuEnabled)
{
    if (GetCurrentRendererId() != TfToken(rendererId)) {
        const std::string text = "Hydra cannot draw with '" + rendererId + "' on this machine";
        throw base::error_handling::Exception(std::make_error_code(std::errc::not_supported), text.c_str());
    }
    SetEnablePresentation(false);
    m_dome = std::make_unique<DomeLight>(_GetRenderIndex());
}

Engine::~Engine() { m_dome.reset(); }

UsdImagingGLRenderParams Engine::_params(const DrawRequest& request) const
{
    const picture::FrameSettings& s = request.settings;
    UsdImagingGLRenderParams params;
    params.frame = std::isnan(s.time) ? UsdTimeCode::Default() : UsdTimeCode(s.time);
    params.complexity = request.complexity;
    params.drawMode = hydraModeOf(s.drawMode);
    params.showGuides = false;
    params.showProxy = s.proxyPurpose;
    params.showRender = !s.proxyPurpose;
    params.enableSceneMaterials = s.sceneMaterials && !leavesMaterialsOut(s.drawMode);
    params.enableSceneLights = s.lighting.sceneLightsEnabled;
    params.clipPlanes = request.view.clipPlanes;
    params.clearColor = GfVec4f(0.0f);
    params.colorCorrectionMode = HdxColorCorrectionTokens->disabled;
    return params;
}

void Engine::_setLights(const DrawRequest& request)
{
    const usd::hydra_renderer::LightingInfo& info = request.settings.lighting;
    m_dome->set(DomeValues::of(info, request.zUp));
    GlfSimpleLightVector lights;
    std::copy_if(info.lights.begin(), info.lights.end(), std::back_inserter(lights),
                 [](const GlfSimpleLight& light) { return !light.IsDomeLight(); });
    SetRendererSetting(HdRenderSettingsTokens->domeLightCameraVisibility, VtValue(info.domeLightVisible));
    if (m_lightsAreSet && lights == m_lights && info.material == m_material) return;
    m_lightsAreSet = true;
    m_lights = lights;
    m_material = info.material;
    // The ambient colour is part of the dome: Hydra's own would not take the surfaces' colours.
    SetLightingState(lights, info.material, GfVec4f(0.0f, 0.0f, 0.0f, 1.0f));
}

void Engine::_setUp(const DrawRequest& request, const UsdImagingGLRenderParams& params)
{
    const picture::FrameSettings& s = request.settings;
    const SdfPathVector roots = {SdfPath::AbsoluteRootPath()};
    _UpdateHydraCollection(&_renderCollection, roots, params);
    _taskController->SetCollection(_renderCollection);
    _PrepareRender(params);
    SetColorCorrectionSettings(params.colorCorrectionMode);
    _taskController->SetEnableSelection(false);
    SetRenderBufferSize(s.size);
    SetFraming(CameraUtilFraming(GfRange2f(GfVec2f(0.0f), GfVec2f(s.size)), dataWindowOf(s)));
    SetOverrideWindowPolicy(std::optional<CameraUtilConformWindowPolicy>());
    SetCameraState(request.view.view, request.view.shiftedProjection(s.size, request.shift));
    _setLights(request);
}

// Changing the outputs makes their buffers anew, so that is left alone where they are the same.
void Engine::_setOutputs(const TfTokenVector& outputs, bool multiSampled)
{
    _taskController->SetRenderOutputs(outputs);
    for (const TfToken& output : outputs) {
        HdAovDescriptor descriptor = _taskController->GetRenderOutputSettings(output);
        if (descriptor.format == HdFormatInvalid) continue;
        descriptor.multiSampled = multiSampled && descriptor.multiSampled;
        if (output == HdAovTokens->color) descriptor.clearValue = VtValue(GfVec4f(0.0f));
        // All bits set is -1: nothing is there.
        if (isId(output) && descriptor.format == HdFormatUNorm8Vec4)
            descriptor.clearValue = VtValue(GfVec4f(1.0f));
        _taskController->SetRenderOutputSettings(output, descriptor);
    }
}

void Engine::_execute(const UsdImagingGLRenderParams& params, const std::function<void()>& stageRead)
{
    HdTaskSharedPtrVector tasks = _taskController->GetRenderingTasks();
    if (stageRead) tasks.insert(tasks.begin(), std::make_shared<StageReadTask>(stageRead));
    _GetHdEngine()->SetTaskContextData(HdxTokens->selectionState, VtValue(_selTracker));
    _UpdateDomeLightCameraVisibility();
    _Execute(params, std::move(tasks));
}

void Engine::drawColor(const DrawRequest& request, const UsdPrim& root,
                       const std::function<void()>& stageRead)
{
    const UsdImagingGLRenderParams params = _params(request);
    if (root) PrepareBatch(root, params);
    _setOutputs({HdAovTokens->color, HdAovTokens->depth}, true);
    _setUp(request, params);
    _execute(params, root ? stageRead : std::function<void()>());
    if (_gpuEnabled) glFinish();
}

void Engine::addColorTo(picture::Film& film, const PixelRect& rect)
{
    addColors(GetAovRenderBuffer(HdAovTokens->color), rect, film);
}

std::vector<float> Engine::depthOfColor(const PixelRect& rect)
{
    return readFloats(GetAovRenderBuffer(HdAovTokens->depth), rect);
}

RawPixels Engine::drawGeometry(const DrawRequest& request, const PixelRect& rect)
{
    const UsdImagingGLRenderParams params = _params(request);
    _setOutputs({HdAovTokens->color, HdAovTokens->depth, HdAovTokens->primId, HdAovTokens->instanceId,
                 HdAovTokens->elementId, HdAovTokens->Neye},
                false);
    _setUp(request, params);
    _execute(params, {});
    while (isProgressing())
        _execute(params, {});
    RawPixels pixels;
    pixels.depth = readFloats(GetAovRenderBuffer(HdAovTokens->depth), rect);
    pixels.prim = readIds(GetAovRenderBuffer(HdAovTokens->primId), rect);
    pixels.instance = readIds(GetAovRenderBuffer(HdAovTokens->instanceId), rect);
    pixels.element = readIds(GetAovRenderBuffer(HdAovTokens->elementId), rect);
    pixels.eyeNormal = readNormals(GetAovRenderBuffer(HdAovTokens->Neye), rect);
    return pixels;
}

void Engine::readStage(const DrawRequest& request, const UsdPrim& root)
{
    PrepareBatch(root, _params(request));
}

std::vector<RawHit> Engine::pick(const DrawRequest& request, const GfVec2d& corner, const GfVec2i& cells,
                                 double cellSize)
{
    const UsdImagingGLRenderParams params = _params(request);
    const SdfPathVector roots = {SdfPath::AbsoluteRootPath()};
    _UpdateHydraCollection(&_intersectCollection, roots, params);
    _PrepareRender(params);
    const GfMatrix4d projection = request.view.projectionOf(request.settings.size, corner[0], corner[1],
                                                            cells[0] * cellSize, cells[1] * cellSize);
    HdxPickHitVector hits;
    HdxPickTaskContextParams context;
    context.resolution = cells;
    context.resolveMode = HdxPickTokens->resolveAll;
    context.viewMatrix = request.view.view;
    context.projectionMatrix = projection;
    context.clipPlanes = params.clipPlanes;
    context.collection = _intersectCollection;
    context.outHits = &hits;
    _GetHdEngine()->SetTaskContextData(HdxPickTokens->pickParams, VtValue(context));
    _Execute(params, _taskController->GetPickingTasks());

    const GfMatrix4d toCells = request.view.view * projection;
    std::vector<RawHit> found;
    found.reserve(hits.size());
    for (const HdxPickHit& hit : hits) {
        // Hydra tells the corner of the cell, counted from the bottom left.
        const GfVec3d ndc = toCells.Transform(hit.worldSpaceHitPoint);
        const double column = std::round((ndc[0] + 1.0) * 0.5 * cells[0]);
        const double row = cells[1] - 1 - std::round((ndc[1] + 1.0) * 0.5 * cells[1]);
        RawHit raw;
        raw.pixel = corner + GfVec2d(column + 0.5, row + 0.5) * cellSize;
        raw.depth = hit.normalizedDepth;
        raw.normal = hit.worldSpaceHitNormal;
        raw.instance = hit.instanceIndex;
        const HdRprim* prim = _GetRenderIndex()->GetRprim(hit.objectId);
        raw.prim = prim ? prim->GetPrimId() : -1;
        found.push_back(raw);
    }
    return found;
}

HitNames Engine::namesOf(std::int32_t prim, std::int32_t instance, const UsdStageRefPtr& stage)
{
    const auto bytes = [](std::int32_t id) {
        std::array<unsigned char, 4> result{};
        for (unsigned i = 0; i < 4; ++i)
            result[i] = static_cast<unsigned char>(static_cast<std::uint32_t>(id) >> (8 * i) & 0xff);
        return result;
    };
    HitNames names;
    SdfPath instancer;
    int index = -1;
    HdInstancerContext context;
    if (!DecodeIntersection(bytes(prim).data(), bytes(instance).data(), &names.prim, &instancer, &index,
                            &context)) {
        return names;
    }
    // The outermost point instancer stands first; it may itself be brought by a native instance.
    const SdfPath& outermost = context.empty() ? names.prim : context.front().first;
    names.instance = outermostInstance(stage, outermost);
    if (!context.empty()) {
        names.instanceIndex = context.front().second;
        if (names.instance.IsEmpty()) names.instance = outermost;
    }
    if (names.instance.IsEmpty()) return names;
    const UsdPrim shown = stage->GetPrimAtPath(names.prim);
    names.prototype = shown && shown.IsInstanceProxy() ? shown.GetPrimInPrototype().GetPath() : names.prim;
    return names;
}

} // namespace vesk::renderers::hydra
