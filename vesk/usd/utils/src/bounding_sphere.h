#pragma once

#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/vec3d.h>

#include <optional>

namespace vesk::usd::utils {

/// The sphere around a box, in double precision.
struct BoundingSphere
{
    PXR_NS::GfVec3d center;
    double radius; ///< half the box's diagonal; 0 for a point
};

/// Returns the sphere around bounds that can be worked with; nothing for empty, inverted or non-finite ones.
/// Coordinates are cut to the limit of clampCoordinate().
std::optional<BoundingSphere> boundingSphere(const PXR_NS::GfRange3f& bounds);

/// As boundingSphere(), with the box from (-1, -1, -1) to (1, 1, 1) for bounds that cannot be worked with,
/// and a radius above 0 for a point.
BoundingSphere framedSphere(const PXR_NS::GfRange3f& bounds);

/// Cuts a finite coordinate to plus or minus 1e19, whose square a float still holds.
double clampCoordinate(double value);

} // namespace vesk::usd::utils
