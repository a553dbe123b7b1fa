#include "camera_fitting.h"

#include <pxr/base/gf/matrix4f.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

// The camera as a value: its defaults, what it is fitted to, and the copies in and out of shared state.
namespace vesk::framework::usd_viewport {

float ViewportModel::m_defaultVerticalFieldOfView = 45.0f;
CameraUtilConformWindowPolicy ViewportModel::m_defaultCameraFitPolicy = CameraUtilFit;

void setRackFocus(GfCamera& camera, float focalLength)
{
    rackFocus(camera, focalLength, ViewportModel::m_defaultVerticalFieldOfView);
}

float ViewportModel::defaultVerticalFieldOfView() { return m_defaultVerticalFieldOfView; }

void ViewportModel::setDefaultVerticalFieldOfView(float degrees) { m_defaultVerticalFieldOfView = degrees; }

CameraUtilConformWindowPolicy ViewportModel::defaultCameraFitPolicy() { return m_defaultCameraFitPolicy; }

void ViewportModel::setDefaultCameraFitPolicy(CameraUtilConformWindowPolicy policy)
{
    m_defaultCameraFitPolicy = policy;
}

const GfCamera& ViewportModel::getGfCamera() const { return m_gfCamera; }

GfCamera ViewportModel::getViewportCamera() const
{
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    return m_gfCamera;
}

void ViewportModel::_storeCamera(const GfCamera& camera)
{
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    m_gfCamera = camera;
}

GfMatrix4f ViewportModel::getViewMatrix() const
{
    return GfMatrix4f(getViewportCamera().GetTransform().GetInverse(nullptr, 0.0));
}

bool ViewportModel::zUp() const { return m_zUp.load(std::memory_order_relaxed); }

void ViewportModel::setZUp(bool zUp) { m_zUp.store(zUp, std::memory_order_relaxed); }

GfCamera ViewportModel::adjustGfCamera(const GfCamera& camera)
{
    GfCamera adjusted = camera;
    updateGfCameraAperature(adjusted);
    updateGfCameraNearFar(adjusted, distanceToCenter());
    return adjusted;
}

void ViewportModel::checkGfCameraTransform(GfCamera& camera) const { cleanTransform(camera); }

void ViewportModel::updateGfCameraAperature(GfCamera& camera)
{
    fitAperture(camera, getRenderAspectRatio(), distanceToCenter());
}

void ViewportModel::checkGfCameraFocusDistance(GfCamera& camera)
{
    vesk::usd::utils::checkGfCameraFocusDistance(camera, _getCachedSceneBounds());
}

void ViewportModel::updateGfCameraNearFar(GfCamera& camera, float distance)
{
    vesk::usd::utils::updateGfCameraNearFar(camera, zUp(), distanceToCenter(), distance,
                                            _getCachedSceneBounds());
}

float ViewportModel::getGfCameraDistanceToCenter(const GfCamera& camera)
{
    return vesk::usd::utils::getGfCameraDistanceToCenter(camera, _getCachedSceneBounds());
}

GfRange3f ViewportModel::_getCachedSceneBounds()
{
    const std::lock_guard<std::mutex> lock(m_sceneBoundsMutex);
    return m_cachedSceneBounds;
}

void ViewportModel::_setCachedSceneBounds(const GfRange3f& bounds)
{
    const std::lock_guard<std::mutex> lock(m_sceneBoundsMutex);
    m_cachedSceneBounds = bounds;
}

} // namespace vesk::framework::usd_viewport
