#pragma once

#include "geometry.h"

namespace vesk::renderers::embree {

/// The axis that a cone, cylinder, capsule or plane stands on.
enum class ShapeAxis : std::uint8_t
{
    X,
    Y,
    Z
};

/// The implicit shapes as fine meshes with their exact normals, around the origin, in the shape's own units.
/// Curved shapes have `kShapeSegments` segments around their axis.
inline constexpr int kShapeSegments = 96;

Geometry makeSphere(double radius);
Geometry makeCube(double size);
Geometry makeCylinder(double radiusBottom, double radiusTop, double height, ShapeAxis axis);
Geometry makeCone(double radius, double height, ShapeAxis axis);
Geometry makeCapsule(double radiusBottom, double radiusTop, double height, ShapeAxis axis);
Geometry makePlane(double width, double length, ShapeAxis axis);

} // namespace vesk::renderers::embree
