#include "camera_navigation.h"

#include <cmath>
#include <limits>
#include <vesk/framework/usd_viewport/viewport_model.h>

PXR_NAMESPACE_USING_DIRECTIVE

// The gestures: a new camera from the current one, its clipping range, and the hand-on.
namespace vesk::framework::usd_viewport {

const float ViewportModel::kGizmoScaleMin = 0.1f;
const float ViewportModel::kGizmoScaleMax = 3.0f;

void ViewportModel::_finishGesture(GfCamera& camera, const GfMatrix4d& transform,
                                   const std::string& undoLabel)
{
    camera.SetTransform(transform);
    updateGfCameraNearFar(camera, distanceToCenter());
    _setGfCamera(TfWeakPtr<UsdStage>(), camera, undoLabel);
}

void ViewportModel::orbitCamera(float dx, float dy, const std::string& undoLabel)
{
    if (dx == 0.0f && dy == 0.0f) return;
    GfCamera camera = getViewportCamera();
    const TurnAngles angles = turnAngles(dx, dy, m_renderSize);
    _finishGesture(camera, orbited(camera.GetTransform(), angles, zUp(), distanceToCenter()), undoLabel);
}

void ViewportModel::orbitCameraUsingDeltaAngles(float yaw, float pitch, const std::string& undoLabel)
{
    if (yaw == 0.0f && pitch == 0.0f) return;
    GfCamera camera = getViewportCamera();
    _finishGesture(camera, orbited(camera.GetTransform(), {yaw, pitch}, zUp(), distanceToCenter()),
                   undoLabel);
}

void ViewportModel::rotateCamera(float dx, float dy, const std::string& undoLabel)
{
    if (dx == 0.0f && dy == 0.0f) return;
    GfCamera camera = getViewportCamera();
    const TurnAngles angles = turnAngles(dx, dy, m_renderSize);
    _finishGesture(camera, rotated(camera.GetTransform(), angles, zUp()), undoLabel);
}

void ViewportModel::panCamera(float dx, float dy, const std::string& undoLabel)
{
    if (dx == 0.0f && dy == 0.0f) return;
    GfCamera camera = getViewportCamera();
    const float fieldOfView = verticalFieldOfView(camera, m_defaultVerticalFieldOfView);
    _finishGesture(camera,
                   panned(camera.GetTransform(), dx, dy, m_renderSize, fieldOfView, distanceToCenter()),
                   undoLabel);
}

void ViewportModel::zoomCamera(float dx, float dy, const std::string& undoLabel)
{
    if (dx == 0.0f && dy == 0.0f) return;
    GfCamera camera = getViewportCamera();
    const float before = distanceToCenter();
    const float amount = zoomAmount(dx, dy, m_renderSize, before);
    const float after = before - amount;
    setDistanceToCenter(after);
    camera.SetTransform(dollied(camera.GetTransform(), amount));
    if (camera.GetProjection() == GfCamera::Orthographic)
        camera.SetOrthographicFromAspectRatioAndSize(getRenderAspectRatio(), after, GfCamera::FOVVertical);
    // The range has to hold for the distance before the step: other gestures give the one after it.
    updateGfCameraNearFar(camera, before);
    shiftFocus(camera, after - before);
    _setGfCamera(TfWeakPtr<UsdStage>(), camera, undoLabel);
}

void ViewportModel::moveCamera(float du, float dv, float dw, const std::string& undoLabel)
{
    if (du == 0.0f && dv == 0.0f && dw == 0.0f) return;
    GfCamera camera = getViewportCamera();
    setDistanceToCenter(distanceToCenter() + dw);
    _finishGesture(camera, moved(camera.GetTransform(), du, dv, dw), undoLabel);
}

float ViewportModel::distanceToCenter() const { return m_distanceToCenter.load(std::memory_order_relaxed); }

void ViewportModel::setDistanceToCenter(float distanceToCenter)
{
    m_distanceToCenter.store(distanceToCenter, std::memory_order_relaxed);
}

float ViewportModel::gizmoScaleMultiplier() const { return m_gizmoScaleMultiplier; }

void ViewportModel::setGizmoScaleMultiplier(float value)
{
    float scale = value;
    if (value > kGizmoScaleMax)
        scale = kGizmoScaleMax;
    else if (kGizmoScaleMin > value)
        scale = kGizmoScaleMin;
    // A NaN is stored, so the comparison must be the one that fails for it.
    if (std::fabs(scale - m_gizmoScaleMultiplier) < std::numeric_limits<float>::epsilon()) return;
    m_gizmoScaleMultiplier = scale;
}

} // namespace vesk::framework::usd_viewport
