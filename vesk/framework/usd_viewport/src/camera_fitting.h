#pragma once

#include <pxr/base/gf/camera.h>

/// \file
/// Camera arithmetic outside the gestures, on values alone.
namespace vesk::framework::usd_viewport {

/// Cleans the transform of a camera that was read from a stage: mirrored axes are turned right-handed by
/// negating the first row, and axes whose sum has not the length of an orthonormal frame's are made unit
/// length. This is a cheap test, not one for orthonormality.
void cleanTransform(PXR_NS::GfCamera& camera);

/// Fits the aperture to a picture: a perspective camera keeps its vertical field of view and gets the default
/// horizontal aperture; an orthographic one shows `distance` from top to bottom.
/// \param aspect width over height
void fitAperture(PXR_NS::GfCamera& camera, float aspect, float distance);

/// See setRackFocus().
/// \param orthographicFieldOfView vertical field of view in degrees that an orthographic camera counts as
/// having
void rackFocus(PXR_NS::GfCamera& camera, float focalLength, float orthographicFieldOfView);

} // namespace vesk::framework::usd_viewport
