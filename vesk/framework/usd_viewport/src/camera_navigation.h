#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>

/// \file
/// The arithmetic of the navigation gestures, on values alone. Motion is in logical render pixels, angles in
/// degrees; every intermediate number has the type that the results depend on.
namespace vesk::framework::usd_viewport {

/// Angles of a turn in degrees.
struct TurnAngles
{
    float yaw;
    float pitch;
};

/// The angles of pointer motion: a whole width or height is one full turn, against the motion.
TurnAngles turnAngles(float dx, float dy, const int (&renderSize)[2]);

/// Turns a camera about the pivot at `distance` in front of it: each axis first by pitch about U, then by yaw
/// about the world's up axis.
PXR_NS::GfMatrix4d orbited(const PXR_NS::GfMatrix4d& transform, TurnAngles angles, bool zUp, float distance);

/// Turns a camera in place.
PXR_NS::GfMatrix4d rotated(const PXR_NS::GfMatrix4d& transform, TurnAngles angles, bool zUp);

/// Slides a camera in its view plane so that a point at `distance` follows the pointer.
/// \param fieldOfView vertical, in degrees
PXR_NS::GfMatrix4d panned(const PXR_NS::GfMatrix4d& transform, float dx, float dy, const int (&renderSize)[2],
                          float fieldOfView, float distance);

/// Moves a camera along its axes by lengths in stage units.
PXR_NS::GfMatrix4d moved(const PXR_NS::GfMatrix4d& transform, float du, float dv, float dw);

/// The length that pointer motion zooms by: a whole width or height is the whole distance.
float zoomAmount(float dx, float dy, const int (&renderSize)[2], float distance);

/// Moves a camera forward along its view axis.
PXR_NS::GfMatrix4d dollied(const PXR_NS::GfMatrix4d& transform, float amount);

/// Moves the focus with a distance that changed by `delta`, unless there is no focus or it would pass 0.
void shiftFocus(PXR_NS::GfCamera& camera, float delta);

/// The vertical field of view in degrees: the camera's own, or the given one for an orthographic camera.
float verticalFieldOfView(const PXR_NS::GfCamera& camera, float orthographicFieldOfView);

} // namespace vesk::framework::usd_viewport
