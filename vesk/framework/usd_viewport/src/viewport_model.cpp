#include "life_token.h"
#include "owned_lock.h"
#include "path_text.h"
#include "sizes.h"
#include "view_directions.h"

#include <limits>
#include <pxr/base/gf/rotation.h>
#include <pxr/usd/usdGeom/camera.h>
#include <vesk/base/event_bus.h>
#include <vesk/base/logging.h>
#include <vesk/base/result.h>
#include <vesk/base/undo_label_registry.h>
#include <vesk/framework/usd_document/bbox_cache_guard.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/errors.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/utils/bounds_utils.h>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

using vesk::base::Future;
using vesk::base::error_handling::Exception;
using vesk::base::error_handling::makeErrorCode;
using vesk::base::result::checkResult;
using vesk::framework::hydra_renderer::HWContext;
using vesk::framework::hydra_renderer::HydraRenderer;
using vesk::framework::usd_document::TaskType;
using vesk::framework::usd_document::UsdDocument;
using vesk::framework::usd_document::UsdGeomBBoxCacheLockGuard;
using vesk::usd::utils::Param;
using vesk::usd::utils::ProjectionType;

namespace {

constexpr double kDefaultTime = std::numeric_limits<double>::quiet_NaN();
// The space left around a framed box.
constexpr float kFramingFactor = 1.5f;

std::string registerLabel(const char* key, const char* displayText)
{
    return vesk::base::UndoLabelRegistry::getInstance().registerUndoLabel(key, displayText);
}

[[noreturn]] void throwError(ErrEnum error) { throw Exception(makeErrorCode(error)); }

} // namespace

unsigned int ViewportModel::s_nextViewportId = 1;

const std::string ViewportModel::m_cameraAdjustUpDirectionUndoLabel =
    registerLabel("cameraAdjustUpDirection", "camera adjust up");
const std::string ViewportModel::m_cameraCopyFromPathUndoLabel =
    registerLabel("cameraCopyFromPath", "camera copy from path");
const std::string ViewportModel::m_cameraFrameBackViewUndoLabel =
    registerLabel("cameraFrameBackView", "frame back view");
const std::string ViewportModel::m_cameraFrameBottomViewUndoLabel =
    registerLabel("cameraFrameBottomView", "frame bottom view");
const std::string ViewportModel::m_cameraFrameFrontViewUndoLabel =
    registerLabel("cameraFrameFrontView", "frame front view");
const std::string ViewportModel::m_cameraFrameLeftViewUndoLabel =
    registerLabel("cameraFrameLeftView", "frame left view");
const std::string ViewportModel::m_cameraFrameRightViewUndoLabel =
    registerLabel("cameraFrameRightView", "frame right view");
const std::string ViewportModel::m_cameraFrameSceneUndoLabel =
    registerLabel("cameraFrameScene", "frame scene");
const std::string ViewportModel::m_cameraFrameTopViewUndoLabel =
    registerLabel("cameraFrameTopView", "frame top view");
const std::string ViewportModel::m_cameraMatchPerspectiveAndFrameSceneUndoLabel =
    registerLabel("cameraMatchPerspectiveAndFrameScene", "match perspective");
const std::string ViewportModel::m_cameraMoveUndoLabel = registerLabel("cameraMove", "camera move");
const std::string ViewportModel::m_cameraOrbitUndoLabel = registerLabel("cameraOrbit", "camera orbit");
const std::string ViewportModel::m_cameraPanUndoLabel = registerLabel("cameraPan", "camera pan");
const std::string ViewportModel::m_cameraResetViewUndoLabel = registerLabel("cameraResetView", "reset view");
const std::string ViewportModel::m_cameraRotateUndoLabel = registerLabel("cameraRotate", "camera rotate");
const std::string ViewportModel::m_cameraSetBlurAmountUndoLabel =
    registerLabel("cameraSetBlurAmount", "set blur amount");
const std::string ViewportModel::m_cameraSetDepthOfFieldEnabledUndoLabel =
    registerLabel("cameraSetDepthOfFieldEnabled", "set depth of field enabled");
const std::string ViewportModel::m_cameraSetFStopUndoLabel = registerLabel("cameraSetFStop", "set fstop");
const std::string ViewportModel::m_cameraSetFocalLengthUndoLabel =
    registerLabel("cameraSetFocalLength", "set focal length");
const std::string ViewportModel::m_cameraSetFocusDistanceUndoLabel =
    registerLabel("cameraSetFocusDistance", "set focus distance");
const std::string ViewportModel::m_cameraSetProjectionUndoLabel =
    registerLabel("cameraSetProjection", "set projection");
const std::string ViewportModel::m_cameraSetVerticalFOVUndoLabel =
    registerLabel("cameraSetVerticalFOV", "set field of view");
const std::string ViewportModel::m_cameraUpdateUndoLabel = registerLabel("cameraUpdate", "camera update");
const std::string ViewportModel::m_cameraZoomUndoLabel = registerLabel("cameraZoom", "camera zoom");
const std::string ViewportModel::m_matchEnvironmentLightUndoLabel =
    registerLabel("matchEnvironmentLight", "match environment light");

// Life

ViewportModel::ViewportModel(const std::shared_ptr<UsdDocument>& document,
                             const std::shared_ptr<HWContext>& hwContext, const std::string& rendererId,
                             const std::vector<Param<VtValue>>& rendererSettings, const int (&renderSize)[2],
                             const int (&viewportSize)[2], float devicePixelRatio, bool enableSceneMaterials,
                             bool enableColorCorrection, bool enableAsyncRendering,
                             std::function<bool(int, float, bool)> progressCallback,
                             std::function<void(bool)> afterRenderCallback)
    : m_life(std::make_shared<LifeToken>()),
      m_viewportId(s_nextViewportId++),
      m_document(document),
      m_viewportSize{viewportSize[0], viewportSize[1]},
      m_renderSize{renderSize[0], renderSize[1]},
      m_devicePixelRatio(devicePixelRatio)
{
    if (!document) throwError(ErrEnum::InvalidDocument);
    const GfVec2i physicalSize(physicalPixels(m_renderSize[0], devicePixelRatio),
                               physicalPixels(m_renderSize[1], devicePixelRatio));
    m_renderer = HydraRenderer::create(document->getEventBus().get(), document, hwContext, rendererId,
                                       rendererSettings, physicalSize, m_viewportId, enableSceneMaterials,
                                       enableColorCorrection, enableAsyncRendering,
                                       std::move(progressCallback), std::move(afterRenderCallback));
    if (m_renderer) m_renderer->setCameraFitPolicy(m_defaultCameraFitPolicy);
    _subscribe(document);
}

ViewportModel::~ViewportModel()
{
    if (const std::shared_ptr<UsdDocument> document = _lockDocument()) _unsubscribe(document);
    m_life->close();
    _releaseFrameWaiters();
}

void ViewportModel::_subscribe(const std::shared_ptr<UsdDocument>& document)
{
    m_eventListenerId =
        document->getEventBus()->subscribeListener([this](const std::any& event) { _handleEvent(event); });
}

void ViewportModel::_unsubscribe(const std::shared_ptr<UsdDocument>& document)
{
    document->getEventBus()->unsubscribeListener(m_eventListenerId);
    m_eventListenerId = 0;
}

void ViewportModel::setDocument(const std::shared_ptr<UsdDocument>& document)
{
    const std::shared_ptr<UsdDocument> former = _lockDocument();
    if (former == document) return;
    if (former) _unsubscribe(former);
    m_eventListenerId = 0;
    {
        const std::lock_guard<std::mutex> lock(m_stateMutex);
        m_document = document;
    }
    if (document) _subscribe(document);
    m_renderer->setDocument(document);
    recomputeCachedSceneBounds();
}

unsigned int ViewportModel::viewportId() const { return m_viewportId; }

const std::unique_ptr<HydraRenderer>& ViewportModel::getRenderer() const { return m_renderer; }

void ViewportModel::switchRenderer(const std::string& rendererId, const std::vector<Param<VtValue>>& settings)
{
    if (rendererId == m_rendererId) return;
    m_rendererId = rendererId;
    m_renderer->switchRenderer(m_rendererId, settings);
}

// The bracket

void ViewportModel::beginCameraInteraction()
{
    if (m_cameraInteractionActive) {
        VESK_LOG_WARN("ViewportModel beginCameraInteraction: already active");
        return;
    }
    // In this order: a change that sees the bracket open is never forgotten.
    m_cameraChangedDuringInteraction = false;
    m_cameraInteractionActive = true;
}

void ViewportModel::endCameraInteraction()
{
    if (!m_cameraInteractionActive) {
        VESK_LOG_WARN("ViewportModel endCameraInteraction: already inactive");
        return;
    }
    m_cameraInteractionActive = false;
    if (m_cameraChangedDuringInteraction) notifyCameraChanged();
}

// The hand-on of a camera

void ViewportModel::_setRendererGfCamera(const TfWeakPtr<UsdStage>& stage, const GfCamera& camera,
                                         const std::string& undoLabel)
{
    const SdfPath path = _activeCameraPath();
    if (path.IsEmpty()) {
        m_renderer->setCamera(camera);
        notifyCameraChanged();
        return;
    }
    // These die after the lock is released: they may be the last to hold a document or a stage.
    std::shared_ptr<UsdDocument> document;
    UsdStageRefPtr directStage;
    Future<void> written;
    {
        const OwnedLock lock(m_cameraMutex, m_cameraMutexOwner);
        m_interactionCamera = camera;
        if (m_interactionCameraValid) return;
        directStage = TfCreateRefPtrFromProtectedWeakPtr(stage);
        if (directStage) {
            vesk::usd::utils::setGfCameraForCameraPath(stage, path, camera, kDefaultTime);
            notifyCameraChanged();
            return;
        }
        if (m_cameraInteractionActive) m_interactionCameraValid = true;
        document = _lockDocument();
        if (!document) return;
        written = document->_exec(
            whileAlive(m_life, [this, path](const Context& context) { _writeCameraNow(context, path); }),
            TaskType::Edit, undoLabel.empty() ? m_cameraUpdateUndoLabel : undoLabel, _editTarget());
    }
    written.detach();
}

void ViewportModel::_writeCameraNow(const Context& context, const SdfPath& path)
{
    GfCamera camera;
    {
        const OwnedLock lock(m_cameraMutex, m_cameraMutexOwner);
        camera = m_interactionCamera;
        m_interactionCameraValid = false;
    }
    vesk::usd::utils::setGfCameraForCameraPath(context.stage(), path, camera, kDefaultTime);
    notifyCameraChanged();
}

// Framing and stage cameras

Future<void> ViewportModel::frameScene(ProjectionType projection, ViewDirection direction,
                                       const std::vector<SdfPath>& paths)
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Framing without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    return document->_exec(whileAlive(m_life,
                                      [this, projection, direction, paths](const Context& context) {
                                          _frameSceneNow(context, projection, direction, paths);
                                      }),
                           TaskType::Edit, m_cameraFrameSceneUndoLabel, _editTarget());
}

void ViewportModel::_frameSceneNow(const Context& context, ProjectionType projection, ViewDirection direction,
                                   const std::vector<SdfPath>& paths)
{
    using namespace vesk::usd::utils;
    GfRange3f range = _refreshSceneBounds(context, paths);
    if (range.IsEmpty()) range = GfRange3f(GfVec3f(-1.0f), GfVec3f(1.0f));

    const GfCamera current = getViewportCamera();
    const bool ownFieldOfView =
        projection != ProjectionType::Perspective && current.GetProjection() == GfCamera::Perspective;
    const float fieldOfView =
        ownFieldOfView ? current.GetFieldOfView(GfCamera::FOVVertical) : m_defaultVerticalFieldOfView;
    const float distance = getDistanceToCenter(range, projection, fieldOfView, kFramingFactor);
    setDistanceToCenter(distance);

    const FramedView view = framedView(direction, zUp());
    GfCamera camera =
        view.direction
            ? getFramedBBoxGfCameraWithDirection(range, current, *view.direction, zUp(), projection,
                                                 fieldOfView, distance, kFramingFactor)
            : getFramedBBoxGfCamera(range, current, projection, fieldOfView, distance, kFramingFactor);
    updateGfCameraNearFar(camera, distance);

    const float aspect = camera.GetAspectRatio();
    if (camera.GetProjection() == GfCamera::Perspective)
        camera.SetPerspectiveFromAspectRatioAndFieldOfView(
            aspect, camera.GetFieldOfView(GfCamera::FOVVertical), GfCamera::FOVVertical,
            current.GetHorizontalAperture());
    else
        camera.SetOrthographicFromAspectRatioAndSize(aspect, distance, GfCamera::FOVVertical);
    _setGfCamera(context.stage(), camera, view.undoLabel);
}

Future<void> ViewportModel::copyCameraFromPath(const std::string& cameraPath, bool updateDistanceToCenter,
                                               const std::string& label)
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Copying camera from path without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    const std::string& undoLabel = label.empty() ? m_cameraCopyFromPathUndoLabel : label;
    return document->_exec(
        whileAlive(m_life,
                   [this, cameraPath, updateDistanceToCenter, undoLabel](const Context& context) {
                       _copyCameraNow(context, cameraPath, updateDistanceToCenter, undoLabel);
                   }),
        TaskType::Edit, undoLabel, _editTarget());
}

void ViewportModel::_copyCameraNow(const Context& context, const std::string& cameraPath,
                                   bool updateDistanceToCenter, const std::string& label)
{
    const SdfPath path = pathFromText(cameraPath);
    const UsdPrim prim =
        context.stage() && path.IsPrimPath() ? context.stage()->GetPrimAtPath(path) : UsdPrim();
    if (!prim || !prim.IsA<UsdGeomCamera>()) {
        VESK_LOG_ERROR("Camera path {} for copying to viewport camera is not a valid UsdGeomCamera",
                       cameraPath);
        throwError(ErrEnum::InvalidCamera);
    }
    GfCamera camera = UsdGeomCamera(prim).GetCamera(UsdTimeCode(currentTime()));
    checkGfCameraTransform(camera);
    if (updateDistanceToCenter) setDistanceToCenter(getGfCameraDistanceToCenter(camera));
    _setGfCamera(context.stage(), camera, label);
}

Future<void> ViewportModel::setActiveCameraPath(const std::string& cameraPath)
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_DEBUG("setActiveCameraPath called without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    return document->_exec(
        whileAlive(m_life,
                   [this, cameraPath](const Context& context) { _setActiveCameraNow(context, cameraPath); }),
        TaskType::Read, "setActiveCameraPath", UsdEditTarget());
}

void ViewportModel::_setActiveCameraNow(const Context& context, const std::string& cameraPath)
{
    const SdfPath path = pathFromText(cameraPath);
    _refreshSceneBounds(context, {});
    if (path.IsEmpty()) {
        _setActiveCameraPath(path);
        m_renderer->setCamera(getViewportCamera());
    } else {
        auto camera = vesk::usd::utils::getGfCameraFromCameraPath(context.stage(), path, kDefaultTime);
        if (camera.hasValue()) {
            _focusedCamera(camera.takeValue());
            m_renderer->setCamera(path);
            _setActiveCameraPath(path);
        } else {
            _setActiveCameraPath(SdfPath());
        }
    }
    setDistanceToCenter(getGfCameraDistanceToCenter(getViewportCamera()));
}

Future<void> ViewportModel::checkCameraUpAxis()
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Checking up axis without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    return document->_exec(
        whileAlive(m_life, [this](const Context& context) { _checkCameraUpAxisNow(context); }),
        TaskType::Edit, m_cameraAdjustUpDirectionUndoLabel, _editTarget());
}

void ViewportModel::_checkCameraUpAxisNow(const Context& context)
{
    const bool stageZUp = checkResult(vesk::usd::utils::stageIsZUp(context.stage()));
    if (stageZUp == zUp()) return;
    setZUp(stageZUp);
    GfCamera camera = getViewportCamera();
    const GfRotation turn(GfVec3d(1.0, 0.0, 0.0), stageZUp ? 90.0 : -90.0);
    camera.SetTransform(GfMatrix4d(turn, GfVec3d(0.0)) * camera.GetTransform());
    _setGfCamera(context.stage(), camera, m_cameraAdjustUpDirectionUndoLabel);
}

// Scene bounds

// Computes and caches the bounds of the scene; returns those of the paths, or the scene's own.
GfRange3f ViewportModel::_refreshSceneBounds(const Context& context, const std::vector<SdfPath>& paths)
{
    using namespace vesk::usd::utils;
    UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
    UsdGeomBBoxCache* const cache = &guard.getBboxCache();
    const bool proxyGeometry = m_renderProxyGeometry.load(std::memory_order_relaxed);
    const GfRange3f scene = checkResult(computeAlignedGeometryBounds(
        context.stage(), SdfPath::AbsoluteRootPath(), UsdTimeCode(currentTime()), proxyGeometry, cache));
    _setCachedSceneBounds(scene);
    if (paths.empty() || paths.front() == SdfPath::AbsoluteRootPath()) return scene;
    return getSubSceneBounds(context.stage(), paths, proxyGeometry, cache);
}

Future<GfRange3f> ViewportModel::getSceneBounds()
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Getting scene bounds without valid document");
        return Future<GfRange3f>();
    }
    return document->_exec(
        whileAlive(m_life, [this](const Context& context) { return _computeSceneBounds(context); }),
        TaskType::Read, "computeBBox", UsdEditTarget());
}

GfRange3f ViewportModel::_computeSceneBounds(const Context& context) const
{
    UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
    return checkResult(vesk::usd::utils::computeAlignedGeometryBounds(
        context.stage(), SdfPath::AbsoluteRootPath(), UsdTimeCode(currentTime()),
        m_renderProxyGeometry.load(std::memory_order_relaxed), &guard.getBboxCache()));
}

void ViewportModel::recomputeCachedSceneBounds()
{
    const Future<GfRange3f> bounds = getSceneBounds();
    if (!bounds.valid()) return;
    bounds.then(whileAlive(m_life, [this](const GfRange3f& range) { _applySceneBounds(range); })).detach();
}

void ViewportModel::_applySceneBounds(const GfRange3f& bounds)
{
    _setCachedSceneBounds(bounds);
    GfCamera camera = getViewportCamera();
    updateGfCameraNearFar(camera, distanceToCenter());
    _setGfCamera(TfWeakPtr<UsdStage>(), camera, m_cameraUpdateUndoLabel);
}

} // namespace vesk::framework::usd_viewport
