#pragma once

#include "deformation.h"
#include "geometry.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <string>

namespace vesk::renderers::embree {

/// What became of reading one prim's shape: a shape, nothing to draw, or a reason why it cannot be drawn.
struct ShapeReading
{
    Geometry geometry;
    bool drawable = false;
    std::string problem; ///< a sentence's end ("has an index out of range"), empty where nothing is wrong
};

/// The points that a prim authors.
std::vector<Vec3> readPointPositions(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// Reads a mesh: faces become fans of triangles, holes are left out, left-handed faces are turned.
/// Bad input (points that are not finite, indices out of range, counts that do not sum) is a problem.
/// \param primvars names of the primvars that materials read
/// \param deformation what moves the points, null for none; made for as many points as the mesh has
ShapeReading readMesh(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time,
                      const std::vector<std::string>& primvars, const Deformation* deformation = nullptr);

/// How many points a mesh has at a time.
std::size_t countPoints(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// Reads points as spheres.
ShapeReading readPoints(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// Reads curves (BasisCurves, HermiteCurves, NurbsCurves by their control points) as chains of round
/// segments, with the colours and widths of every interpolation.
ShapeReading readCurves(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// Reads an implicit shape (Sphere, Cube, Cone, Cylinder, Capsule, Plane).
ShapeReading readImplicitShape(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// Reads the display colour and opacity of a prim into its shape; values that do not fit its counts are
/// dropped. \param faces,points,corners counts of the authored shape
void readDisplayPrimvars(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time, std::size_t faces,
                         std::size_t points, std::size_t corners, Geometry& geometry);

} // namespace vesk::renderers::embree
