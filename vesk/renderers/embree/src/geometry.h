#pragma once

#include "drawing.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

/// How the values of a primvar spread over a surface.
enum class Interpolation : std::uint8_t
{
    None,
    Constant,
    Uniform,
    Varying, ///< linear between points; `Vertex` follows the surface where it is subdivided
    Vertex,
    FaceVarying
};

/// Values over a surface, already expanded through their indices.
template <class T>
struct Primvar
{
    std::vector<T> values;
    Interpolation interpolation = Interpolation::None;

    bool empty() const { return interpolation == Interpolation::None; }
};

/// A primvar that a material reads by its name, such as texture coordinates.
struct NamedPrimvar
{
    std::string name;
    Primvar<Vec4> values;
};

enum class GeometryKind : std::uint8_t
{
    Triangles,
    Spheres, ///< one sphere a point
    Curves   ///< round linear segments
};

/// One triangle: its points, and where it comes from.
struct Triangle
{
    std::uint32_t point[3] = {0, 0, 0};
};

/// A shape in its own space, ready for ray tracing. It never changes after it was made.
struct Geometry
{
    GeometryKind kind = GeometryKind::Triangles;
    std::vector<Vec3> points;
    std::vector<float> radii; ///< of spheres and curves, one a point

    std::vector<Triangle> triangles;
    std::vector<std::uint32_t> corners; ///< three a triangle: its corners among the authored face corners
    std::vector<std::uint32_t> faces;   ///< one a triangle: the authored face
    std::vector<std::uint8_t>
        outlineEdges;                    ///< one a triangle: bit i is set where edge i, i+1 bounds the face
    std::vector<std::uint32_t> segments; ///< first point of each curve segment
    std::vector<std::uint32_t> segmentCurve; ///< one a segment: the curve that it belongs to

    Primvar<Vec3> normals;
    Primvar<Vec3> colors;
    Primvar<float> opacities;
    std::vector<NamedPrimvar> primvars; ///< those that materials read
    std::size_t faceCount = 0;          ///< of the authored shape: faces, curves or points
    Vec3 lower;                         ///< the corners of the box around the shape
    Vec3 upper;

    /// Makes unit normals at the faces' corners for a surface without normals of its own: the mean of the
    /// faces around a point, weighted by area, without those that lean away from the corner's own face too
    /// far. \param leastCosine of the angle between faces that are shaded as one surface
    void addSmoothNormals(float leastCosine);

    /// Sets `lower` and `upper` from the points and radii.
    void computeBox();
};

/// The value of a primvar at a place of a triangle.
/// \param triangle index of the triangle
/// \param u,v barycentric weights of its second and third corner
template <class T>
T interpolate(const Geometry& geometry, const Primvar<T>& primvar, std::uint32_t triangle, float u, float v)
{
    const float w = 1.0f - u - v;
    switch (primvar.interpolation) {
    case Interpolation::Uniform:
        return primvar.values[geometry.faces[triangle]];
    case Interpolation::Varying:
    case Interpolation::Vertex: {
        const Triangle& t = geometry.triangles[triangle];
        return primvar.values[t.point[0]] * w + primvar.values[t.point[1]] * u +
               primvar.values[t.point[2]] * v;
    }
    case Interpolation::FaceVarying: {
        const std::uint32_t* c = &geometry.corners[3 * static_cast<std::size_t>(triangle)];
        return primvar.values[c[0]] * w + primvar.values[c[1]] * u + primvar.values[c[2]] * v;
    }
    default:
        return primvar.values[0];
    }
}

} // namespace vesk::renderers::embree
