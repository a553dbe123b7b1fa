#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/vec3d.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace vesk::usd::utils::tests {

PXR_NAMESPACE_USING_DIRECTIVE

inline GfVec3d axis(const GfCamera& camera, int row)
{
    const GfMatrix4d transform = camera.GetTransform();
    return GfVec3d(transform[row][0], transform[row][1], transform[row][2]);
}

/// A point in the camera's own space, by dot products with its axes: x right, y up, z depth into the view.
inline GfVec3d inCameraSpace(const GfCamera& camera, const GfVec3d& point)
{
    const GfVec3d offset = point - axis(camera, 3);
    return GfVec3d(GfDot(offset, axis(camera, 0)), GfDot(offset, axis(camera, 1)),
                   -GfDot(offset, axis(camera, 2)));
}

inline GfVec3d corner(const GfRange3f& box, int index)
{
    return GfVec3d(index & 1 ? box.GetMax()[0] : box.GetMin()[0],
                   index & 2 ? box.GetMax()[1] : box.GetMin()[1],
                   index & 4 ? box.GetMax()[2] : box.GetMin()[2]);
}

/// How far out the box's corners lie in a window of that aspect ratio whose height is the camera's: 1 is the
/// edge.
inline double largestWindowCoordinate(const GfCamera& camera, const GfRange3f& box, double aspect)
{
    // Apertures are tenths of a unit of the focal length's tenth: the ratio is the tangent of half the angle.
    const double halfHeight = camera.GetProjection() == GfCamera::Orthographic
                                  ? camera.GetVerticalAperture() * 0.1 * 0.5
                                  : camera.GetVerticalAperture() * 0.5 / camera.GetFocalLength();
    double largest = 0.0;
    for (int index = 0; index < 8; ++index) {
        const GfVec3d point = inCameraSpace(camera, corner(box, index));
        const double depth = camera.GetProjection() == GfCamera::Orthographic ? 1.0 : point[2];
        if (!(depth > 0.0)) return HUGE_VAL;
        largest = std::max({largest, std::abs(point[0]) / depth / (halfHeight * aspect),
                            std::abs(point[1]) / depth / halfHeight});
    }
    return largest;
}

/// Whether the depths of all corners lie in the clipping range.
inline bool enclosesDepths(const GfCamera& camera, const GfRange3f& box)
{
    const GfRange1f range = camera.GetClippingRange();
    for (int index = 0; index < 8; ++index) {
        const double depth = inCameraSpace(camera, corner(box, index))[2];
        if (!(depth >= range.GetMin() && depth <= range.GetMax())) return false;
    }
    return true;
}

/// Whether every number of the camera is finite.
inline bool isFiniteCamera(const GfCamera& camera)
{
    const GfMatrix4d transform = camera.GetTransform();
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (!std::isfinite(transform[row][column])) return false;
        }
    }
    return std::isfinite(camera.GetHorizontalAperture()) && std::isfinite(camera.GetVerticalAperture()) &&
           std::isfinite(camera.GetFocalLength()) && std::isfinite(camera.GetFocusDistance()) &&
           std::isfinite(camera.GetClippingRange().GetMin()) &&
           std::isfinite(camera.GetClippingRange().GetMax());
}

/// Floats that arithmetic trips over.
inline const float kNastyFloats[] = {0.0f,    -0.0f,    1.0f,      -1.0f,      1e-45f,        1e-38f,
                                     1e-30f,  1e-10f,   1e-3f,     0.5f,       45.0f,         90.0f,
                                     179.0f,  180.0f,   360.0f,    1e6f,       1e10f,         1e19f,
                                     3.4e38f, -3.4e38f, HUGE_VALF, -HUGE_VALF, std::nanf(""), -1e6f};

} // namespace vesk::usd::utils::tests
