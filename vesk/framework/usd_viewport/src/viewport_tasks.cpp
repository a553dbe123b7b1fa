#include "viewport_tasks.h"

#include "owned_lock.h"
#include "path_text.h"
#include "view_directions.h"

#include <pxr/base/gf/rotation.h>
#include <pxr/usd/usd/timeCode.h>
#include <pxr/usd/usdGeom/camera.h>
#include <vesk/base/result.h>
#include <vesk/base/sync_point.h>
#include <vesk/framework/usd_document/bbox_cache_guard.h>
#include <vesk/usd/utils/bounds_utils.h>
#include <vesk/usd/utils/camera_utils.h>
#include <vesk/usd/utils/stage_camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

using namespace vesk::usd::utils;
using vesk::base::result::checkResult;
using vesk::framework::usd_document::UsdGeomBBoxCacheLockGuard;

namespace {

// The space left around a framed box.
constexpr float kFramingFactor = 1.5f;

// Gives a framed camera the viewport's own lens: the horizontal aperture of a perspective one, and `distance`
// from top to bottom of an orthographic one.
void fitFramedLens(GfCamera& camera, float horizontalAperture, float distance)
{
    const float aspect = camera.GetAspectRatio();
    if (camera.GetProjection() == GfCamera::Perspective)
        camera.SetPerspectiveFromAspectRatioAndFieldOfView(
            aspect, camera.GetFieldOfView(GfCamera::FOVVertical), GfCamera::FOVVertical, horizontalAperture);
    else
        camera.SetOrthographicFromAspectRatioAndSize(aspect, distance, GfCamera::FOVVertical);
}

} // namespace

// Bounds

GfRange3f ViewportTasks::_sceneBounds(const Context& context, UsdGeomBBoxCache& cache) const
{
    return checkResult(computeAlignedGeometryBounds(
        context.stage(), SdfPath::AbsoluteRootPath(), UsdTimeCode(m_model.currentTime()),
        m_model.m_renderProxyGeometry.load(std::memory_order_relaxed), &cache));
}

GfRange3f ViewportTasks::computeSceneBounds(const Context& context)
{
    UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
    return _sceneBounds(context, guard.getBboxCache());
}

// Computes and caches the bounds of the scene; returns those of the paths, or the scene's own.
GfRange3f ViewportTasks::_refreshSceneBounds(const Context& context, const std::vector<SdfPath>& paths)
{
    UsdGeomBBoxCacheLockGuard guard(context.bboxCacheGuard());
    const GfRange3f scene = _sceneBounds(context, guard.getBboxCache());
    m_model._setCachedSceneBounds(scene);
    if (paths.empty() || paths.front() == SdfPath::AbsoluteRootPath()) return scene;
    return getSubSceneBounds(context.stage(), paths,
                             m_model.m_renderProxyGeometry.load(std::memory_order_relaxed),
                             &guard.getBboxCache());
}

void ViewportTasks::applySceneBounds(const GfRange3f& bounds)
{
    m_model._setCachedSceneBounds(bounds);
    VESK_SYNC_POINT("bounds.cached");
    GfCamera camera = m_model.getViewportCamera();
    m_model.updateGfCameraNearFar(camera, m_model.distanceToCenter());
    VESK_SYNC_POINT("bounds.fitted");
    m_model._setGfCamera(TfWeakPtr<UsdStage>(), camera, ViewportModel::m_cameraUpdateUndoLabel);
}

// Framing

float ViewportTasks::_framingFieldOfView(ProjectionType projection, const GfCamera& current) const
{
    if (projection == ProjectionType::Perspective || current.GetProjection() != GfCamera::Perspective)
        return ViewportModel::m_defaultVerticalFieldOfView;
    return current.GetFieldOfView(GfCamera::FOVVertical);
}

void ViewportTasks::frameScene(const Context& context, ProjectionType projection, ViewDirection direction,
                               const std::vector<SdfPath>& paths)
{
    GfRange3f range = _refreshSceneBounds(context, paths);
    if (range.IsEmpty()) range = GfRange3f(GfVec3f(-1.0f), GfVec3f(1.0f));

    const GfCamera current = m_model.getViewportCamera();
    const float fieldOfView = _framingFieldOfView(projection, current);
    const float distance = getDistanceToCenter(range, projection, fieldOfView, kFramingFactor);
    m_model.setDistanceToCenter(distance);

    const bool zUp = m_model.zUp();
    const FramedView view = framedView(direction, zUp);
    GfCamera camera =
        view.direction
            ? getFramedBBoxGfCameraWithDirection(range, current, *view.direction, zUp, projection,
                                                 fieldOfView, distance, kFramingFactor)
            : getFramedBBoxGfCamera(range, current, projection, fieldOfView, distance, kFramingFactor);
    m_model.updateGfCameraNearFar(camera, distance);
    fitFramedLens(camera, current.GetHorizontalAperture(), distance);
    m_model._setGfCamera(context.stage(), camera, view.undoLabel);
}

// Scene cameras

std::optional<GfCamera> ViewportTasks::readCamera(const Context& context, const std::string& cameraPath)
{
    const SdfPath path = pathFromText(cameraPath);
    if (!context.stage() || !path.IsPrimPath()) return std::nullopt;
    const UsdPrim prim = context.stage()->GetPrimAtPath(path);
    if (!prim || !prim.IsA<UsdGeomCamera>()) return std::nullopt;
    return UsdGeomCamera(prim).GetCamera(UsdTimeCode(m_model.currentTime()));
}

void ViewportTasks::acceptCamera(const Context& context, GfCamera camera, bool updateDistanceToCenter,
                                 const std::string& undoLabel)
{
    m_model.checkGfCameraTransform(camera);
    if (updateDistanceToCenter) m_model.setDistanceToCenter(m_model.getGfCameraDistanceToCenter(camera));
    m_model._setGfCamera(context.stage(), camera, undoLabel);
}

void ViewportTasks::setActiveCamera(const Context& context, const std::string& cameraPath)
{
    const SdfPath path = pathFromText(cameraPath);
    _refreshSceneBounds(context, {});
    if (path.IsEmpty()) {
        m_model._setActiveCameraPath(path);
        m_model.m_renderer->setCamera(m_model.getViewportCamera());
    } else {
        auto camera = getGfCameraFromCameraPath(context.stage(), path, kDefaultTime);
        if (camera.hasValue()) {
            m_model._focusedCamera(camera.takeValue());
            m_model.m_renderer->setCamera(path);
            VESK_SYNC_POINT("model.follow");
            m_model._setActiveCameraPath(path);
        } else {
            m_model._setActiveCameraPath(SdfPath());
        }
    }
    m_model.setDistanceToCenter(m_model.getGfCameraDistanceToCenter(m_model.getViewportCamera()));
}

void ViewportTasks::checkCameraUpAxis(const Context& context)
{
    const bool stageZUp = checkResult(stageIsZUp(context.stage()));
    if (stageZUp == m_model.zUp()) return;
    m_model.setZUp(stageZUp);
    GfCamera camera = m_model.getViewportCamera();
    const GfRotation turn(GfVec3d(1.0, 0.0, 0.0), stageZUp ? 90.0 : -90.0);
    camera.SetTransform(GfMatrix4d(turn, GfVec3d(0.0)) * camera.GetTransform());
    m_model._setGfCamera(context.stage(), camera, ViewportModel::m_cameraAdjustUpDirectionUndoLabel);
}

void ViewportTasks::writeCamera(const Context& context, const SdfPath& path)
{
    GfCamera camera;
    {
        const OwnedLock lock(m_model.m_cameraMutex);
        camera = m_model.m_interactionCamera;
        m_model.m_interactionCameraValid = false;
    }
    VESK_SYNC_POINT("camera.taken");
    setGfCameraForCameraPath(context.stage(), path, camera, kDefaultTime);
    m_model.notifyCameraChanged();
}

} // namespace vesk::framework::usd_viewport
