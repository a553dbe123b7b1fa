#pragma once

#include "geometry.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <string>
#include <vector>

namespace vesk::renderers::embree {

enum class SubdivisionScheme : std::uint8_t
{
    None,
    Bilinear,
    CatmullClark,
    Loop
};

/// The faces of a mesh and the rules of its subdivision, as authored; faults that concern a rule alone are
/// dropped.
struct MeshTopology
{
    PXR_NS::VtIntArray counts;
    PXR_NS::VtIntArray indices;
    std::vector<int> holes;
    bool leftHanded = false;
    SubdivisionScheme scheme = SubdivisionScheme::CatmullClark;
    PXR_NS::TfToken boundary;         ///< interpolateBoundary
    PXR_NS::TfToken faceVarying;      ///< faceVaryingLinearInterpolation
    bool smoothTriangles = false;     ///< triangleSubdivisionRule
    std::vector<int> creasePairs;     ///< two points an edge
    std::vector<float> creaseWeights; ///< one an edge
    std::vector<int> corners;
    std::vector<float> cornerWeights;

    /// Whether the surface is smooth: its normals follow from its shape.
    bool isSmooth() const
    {
        return scheme == SubdivisionScheme::CatmullClark || scheme == SubdivisionScheme::Loop;
    }
};

/// Reads the topology of a mesh.
MeshTopology readTopology(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// The faces of a TetMesh's surface: the authored ones, else those that belong to one tetrahedron alone.
MeshTopology readTetTopology(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// The quads between the control points of a NurbsPatch, as OpenUSD's imaging draws it.
MeshTopology readPatchTopology(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

/// What is wrong with a mesh, as a sentence's end; empty where nothing is.
std::string problemOf(const MeshTopology& topology, const std::vector<Vec3>& points);

/// Fills a shape with the triangles of the faces: fans, or ears where a face is not convex. Left-handed faces
/// are turned, holes left out.
void addFaces(Geometry& geometry, const MeshTopology& topology);

} // namespace vesk::renderers::embree
