#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <vesk/usd/utils/export.h>
#include <vesk/usd/utils/projection_type.h>
#include <vesk/usd/utils/stage_camera_utils.h>

/// \file
/// Arithmetic on viewport cameras.
///
/// A camera's transform has its axes U (right), V (up) and W (backward) in the first three rows and its
/// position in the last; the camera looks along minus W. The pivot lies at position minus W times the
/// distance to it. Lengths are in stage units and compared only with the bounds or the distance at hand,
/// never with a fixed length, so that a watch and a city are treated alike. Bounds are world space. Bounds
/// with a component that is not finite count as empty, and so do inverted ones; coordinates beyond 1e19 are
/// cut to it.
///
/// Every function accepts any number and answers with finite ones where its sentence does not say otherwise.
/// Thread: any; the functions keep no state.
namespace vesk::usd::utils {

/// Returns the camera's right axis: the first three entries of row 0 as they are.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3d getCameraUDir(const PXR_NS::GfMatrix4d& transform);

/// Returns the camera's up axis: the first three entries of row 1 as they are.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3d getCameraVDir(const PXR_NS::GfMatrix4d& transform);

/// Returns the camera's backward axis: the first three entries of row 2 as they are.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3d getCameraWDir(const PXR_NS::GfMatrix4d& transform);

/// Returns the camera's position: the first three entries of row 3 as they are.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3d getCameraPosition(const PXR_NS::GfMatrix4d& transform);

/// Replaces the first three entries of row 3 and leaves the rest of the transform.
VESK_USD_UTILS_EXPORT void setCameraPosition(PXR_NS::GfMatrix4d& transform, const PXR_NS::GfVec3d& position);

/// Returns the world's up axis: +Z when `zUp`, else +Y.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3d getVec3dUpDir(bool zUp);

/// Returns the unit vector from a subject to a camera that sees its front: +Z, or -Y when `zUp`.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3f frontViewDirection(bool zUp);

/// Returns the unit vector from a subject to a camera that sees its right side: +X.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3f rightViewDirection(bool zUp);

/// Returns the unit vector from a subject to a camera above it: +Y, or +Z when `zUp`.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3f topViewDirection(bool zUp);

/// Returns the unit vector from a subject to a camera that sees its front, right side and top: 35 degrees to
/// the right of the front and 25 degrees above the ground.
VESK_USD_UTILS_EXPORT PXR_NS::GfVec3f threeQuartersViewDirection(bool zUp);

/// Returns the distance from which a camera at the bounds' centre shows all of the bounds.
///
/// The sphere around the bounds counts, so that the answer holds for every direction. A perspective view is
/// filled by the sphere at R / sin(fieldOfView / 2) and an orthographic one, whose vertical size is the
/// distance, at 2 R; the answer is that times `factor`, and at least what a window of 9:16 needs.
/// \param range the bounds; empty ones count as the box from (-1, -1, -1) to (1, 1, 1)
/// \param projection the projection of the view; `Keep` gives a distance that serves both
/// \param fieldOfView vertical, in degrees; cut to 0.01 to 179, not finite or not above 0 counts as 45
/// \param factor the space left around the sphere; not finite or not above 0 counts as 1
VESK_USD_UTILS_EXPORT float getDistanceToCenter(const PXR_NS::GfRange3f& range, ProjectionType projection,
                                                float fieldOfView, float factor);

/// Returns a camera that looks at the centre of the bounds from the current camera's direction.
///
/// The camera keeps the aspect ratio, horizontal aperture, clipping planes and f-stop of `current`. Its axes
/// are those of `current` made orthonormal, its aperture offsets 0 and its focus on the centre; its clipping
/// range encloses the bounds. At a distance that getDistanceToCenter() gave, all corners of the bounds lie
/// inside the window for aspect ratios from 9:16 to 21:9. \param range the bounds; empty ones count as the
/// box from (-1, -1, -1) to (1, 1, 1) \param current the camera to start from \param projection the
/// projection of the new camera \param fieldOfView vertical, in degrees, for a perspective camera; treated as
/// in getDistanceToCenter() \param distanceToCenter from the camera to the centre; when it is not finite or
/// not above 0,
///        getDistanceToCenter() is asked
/// \param factor see getDistanceToCenter()
VESK_USD_UTILS_EXPORT PXR_NS::GfCamera getFramedBBoxGfCamera(const PXR_NS::GfRange3f& range,
                                                             const PXR_NS::GfCamera& current,
                                                             ProjectionType projection, float fieldOfView,
                                                             float distanceToCenter, float factor);

/// Returns a camera that looks at the centre of the bounds from a direction, its up axis towards the world's.
///
/// As getFramedBBoxGfCamera(), but no number of the current camera's transform is used.
/// \param direction from the centre to the camera; need not be a unit vector; a direction that is zero or not
///        finite counts as the front view. Along the world's up axis the camera's right axis is +X.
/// \param zUp whether the world's up axis is Z
VESK_USD_UTILS_EXPORT PXR_NS::GfCamera
getFramedBBoxGfCameraWithDirection(const PXR_NS::GfRange3f& range, const PXR_NS::GfCamera& current,
                                   const PXR_NS::GfVec3d& direction, bool zUp, ProjectionType projection,
                                   float fieldOfView, float distanceToCenter, float factor);

/// Replaces a focus distance that is not above 0 or not finite by the distance to the pivot that
/// getGfCameraDistanceToCenter() gives; does nothing for a valid one, and nothing when the bounds are empty.
VESK_USD_UTILS_EXPORT void checkGfCameraFocusDistance(PXR_NS::GfCamera& camera,
                                                      const PXR_NS::GfRange3f& bounds);

/// Sets the clipping range so that it encloses the bounds from every direction around the pivot.
///
/// With r the distance from the pivot to the farthest point of the sphere around the bounds, the range is
/// distance - r to distance + r: it does not change while the camera orbits. A perspective range stays in
/// front of the camera, with far at most 10^5 times near; an orthographic one may begin behind it. Without
/// bounds the range is made from the distance, and without either a valid range is kept. \param camera the
/// camera, in world space \param zUp the world's up axis; the spherical rule gives the same answer for both
/// \param distanceToCenter from the camera to the pivot; negative when the pivot lies behind
/// \param distance a second distance that the range has to serve, such as the one before a zoom step
/// \param bounds the scene
VESK_USD_UTILS_EXPORT void updateGfCameraNearFar(PXR_NS::GfCamera& camera, bool zUp, float distanceToCenter,
                                                 float distance, const PXR_NS::GfRange3f& bounds);

/// Returns the distance to the pivot for a camera: the depth of the bounds' centre along the view axis.
///
/// When the centre is not in front of the camera, it is the distance to the centre, and the radius of the
/// bounds for a camera at the centre. Without bounds it is the camera's focus distance, else the distance to
/// the world's origin, else the near distance, whichever is first above 0, else 1.
VESK_USD_UTILS_EXPORT float getGfCameraDistanceToCenter(const PXR_NS::GfCamera& camera,
                                                        const PXR_NS::GfRange3f& bounds);

} // namespace vesk::usd::utils
