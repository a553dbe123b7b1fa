#pragma once

#include "material.h"

#include <optional>

namespace vesk::renderers::embree {

/// A place on a shape: a primitive and its parameters.
struct ShapePoint
{
    std::uint32_t primitive = 0;
    float u = 0.0f;
    float v = 0.0f;
    float width = 0.0f; ///< of what is looked at there, in the shape's own units; 0 for a point
};

/// The value of an input at a place, and of a primvar that the shape may lack.
Vec4 evaluate(const MaterialInput& input, const Geometry& geometry, const ShapePoint& at);

/// What a normal map says, in the tangent space of its texture coordinates, as a normal of the shape's own
/// space; nothing where the material has none or the coordinates give no directions.
/// \param normal the shape's shading normal, unit length
std::optional<Vec3> mappedNormal(const Material& material, const Geometry& geometry, const ShapePoint& at,
                                 Vec3 normal);

} // namespace vesk::renderers::embree
