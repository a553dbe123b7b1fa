#include "camera_navigation.h"

#include <cmath>
#include <pxr/base/gf/rotation.h>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

using namespace vesk::usd::utils;

namespace {

void setAxis(GfMatrix4d& transform, int row, const GfVec3d& axis)
{
    for (int column = 0; column < 3; ++column)
        transform[row][column] = axis[column];
}

} // namespace

TurnAngles turnAngles(float dx, float dy, const int (&renderSize)[2])
{
    const float yaw = -(dx / static_cast<float>(renderSize[0])) * 360.0f;
    const float pitch = -(dy / static_cast<float>(renderSize[1])) * 360.0f;
    return {yaw, pitch};
}

GfMatrix4d orbited(const GfMatrix4d& transform, TurnAngles angles, bool zUp, float distance)
{
    const GfVec3d u = getCameraUDir(transform);
    const GfVec3d v = getCameraVDir(transform);
    const GfVec3d w = getCameraWDir(transform);
    const GfRotation yaw(getVec3dUpDir(zUp), angles.yaw);
    const GfRotation pitch(u, angles.pitch);
    // GfRotation::TransformDir() makes this matrix for every direction that it turns.
    const GfMatrix4d pitchTurn = GfMatrix4d().SetRotate(pitch);
    const GfMatrix4d yawTurn = GfMatrix4d().SetRotate(yaw);
    const auto turn = [&](const GfVec3d& axis) { return yawTurn.TransformDir(pitchTurn.TransformDir(axis)); };
    const GfVec3d backward = turn(w);
    const double toPivot = distance;

    GfMatrix4d result(1.0);
    setAxis(result, 0, turn(u));
    setAxis(result, 1, turn(v));
    setAxis(result, 2, backward);
    setAxis(result, 3, getCameraPosition(transform) - w * toPivot + backward * toPivot);
    return result;
}

GfMatrix4d rotated(const GfMatrix4d& transform, TurnAngles angles, bool zUp)
{
    const GfVec3d u = getCameraUDir(transform);
    const GfRotation pitch(u, angles.pitch);
    const GfRotation yaw(getVec3dUpDir(zUp), angles.yaw);
    const GfMatrix4d combined = GfMatrix4d().SetRotate(pitch * yaw);

    GfMatrix4d result = transform;
    setAxis(result, 0, combined.TransformDir(u));
    setAxis(result, 1, combined.TransformDir(getCameraVDir(transform)));
    setAxis(result, 2, combined.TransformDir(getCameraWDir(transform)));
    return result;
}

GfMatrix4d panned(const GfMatrix4d& transform, float dx, float dy, const int (&renderSize)[2],
                  float fieldOfView, float distance)
{
    const float width = static_cast<float>(renderSize[0]);
    const float height = static_cast<float>(renderSize[1]);
    const double half = static_cast<double>(fieldOfView * 0.5f) * 0.017453292519943295;
    const float tangent = std::tan(static_cast<float>(half));
    const float viewHeight = tangent * (2.0f * distance);
    const float viewWidth = (width / height) * viewHeight;
    const float offsetU = -(dx / width) * viewWidth;
    const float offsetV = (dy / height) * viewHeight;

    GfMatrix4d result = transform;
    setCameraPosition(result, getCameraPosition(transform) +
                                  getCameraUDir(transform) * static_cast<double>(offsetU) +
                                  getCameraVDir(transform) * static_cast<double>(offsetV));
    return result;
}

GfMatrix4d moved(const GfMatrix4d& transform, float du, float dv, float dw)
{
    GfMatrix4d result = transform;
    setCameraPosition(result, getCameraPosition(transform) +
                                  getCameraUDir(transform) * static_cast<double>(du) +
                                  getCameraVDir(transform) * static_cast<double>(dv) +
                                  getCameraWDir(transform) * static_cast<double>(dw));
    return result;
}

float zoomAmount(float dx, float dy, const int (&renderSize)[2], float distance)
{
    const float fraction = dx / static_cast<float>(renderSize[0]) + dy / static_cast<float>(renderSize[1]);
    return fraction * distance;
}

GfMatrix4d dollied(const GfMatrix4d& transform, float amount)
{
    GfMatrix4d result = transform;
    setCameraPosition(result,
                      getCameraPosition(transform) - getCameraWDir(transform) * static_cast<double>(amount));
    return result;
}

void shiftFocus(GfCamera& camera, float delta)
{
    const float focus = camera.GetFocusDistance();
    if (focus > 0.0f && focus + delta > 0.0f) camera.SetFocusDistance(focus + delta);
}

float verticalFieldOfView(const GfCamera& camera, float orthographicFieldOfView)
{
    if (camera.GetProjection() == GfCamera::Orthographic) return orthographicFieldOfView;
    return camera.GetFieldOfView(GfCamera::FOVVertical);
}

} // namespace vesk::framework::usd_viewport
