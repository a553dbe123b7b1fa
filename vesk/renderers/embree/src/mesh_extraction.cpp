#include "mesh_extraction.h"

#include "mesh_topology.h"
#include "stage_reading.h"
#include "subdivision.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

// Faces of a cage that meet more sharply than 60 degrees stand for a form with edges, such as a box.
constexpr float kSmoothCosine = 0.5f;

void readNormals(const UsdPrim& prim, UsdTimeCode time, const MeshTopology& t, Geometry& g)
{
    for (const char* name : {"primvars:normals", "normals"}) {
        Primvar<Vec3> normals = readVectorPrimvar(prim, name, time);
        if (normals.empty() || !fits(normals, t.counts.size(), g.points.size(), t.indices.size())) continue;
        for (Vec3& n : normals.values) {
            if (!isFinite(n)) n = Vec3();
        }
        g.normals = std::move(normals);
        return;
    }
}

MeshTopology topologyOf(const UsdPrim& prim, UsdTimeCode time)
{
    const TfToken type = prim.GetTypeName();
    if (type == "TetMesh") return readTetTopology(prim, time);
    return type == "NurbsPatch" ? readPatchTopology(prim, time) : readTopology(prim, time);
}

} // namespace

std::vector<Vec3> readPointPositions(const UsdPrim& prim, UsdTimeCode time)
{
    const VtVec3fArray authored = readAttribute(prim, "points", time, VtVec3fArray());
    std::vector<Vec3> points;
    points.reserve(authored.size());
    for (const GfVec3f& p : authored) {
        points.emplace_back(p);
    }
    return points;
}

void readDisplayPrimvars(const UsdPrim& prim, UsdTimeCode time, std::size_t faces, std::size_t points,
                         std::size_t corners, Geometry& g)
{
    g.colors = readVectorPrimvar(prim, "primvars:displayColor", time);
    if (!fits(g.colors, faces, points, corners)) g.colors = {};
    g.opacities = readFloatPrimvar(prim, "primvars:displayOpacity", time);
    if (!fits(g.opacities, faces, points, corners)) g.opacities = {};
}

std::size_t countPoints(const UsdPrim& prim, UsdTimeCode time)
{
    return readAttribute(prim, "points", time, VtVec3fArray()).size();
}

ShapeReading readMesh(const UsdPrim& prim, UsdTimeCode time, const std::vector<std::string>& primvars,
                      const Deformation* deformation)
{
    ShapeReading reading;
    Geometry& g = reading.geometry;
    const MeshTopology t = topologyOf(prim, time);
    g.points = readPointPositions(prim, time);
    if (deformation) deformation->movePoints(g.points);
    reading.problem = problemOf(t, g.points);
    if (!reading.problem.empty()) return reading;
    g.faceCount = t.counts.size();
    readDisplayPrimvars(prim, time, t.counts.size(), g.points.size(), t.indices.size(), g);
    for (const std::string& name : primvars) {
        Primvar<Vec4> values = readNumbersPrimvar(prim, "primvars:" + name, time);
        if (!values.empty() && fits(values, t.counts.size(), g.points.size(), t.indices.size()))
            g.primvars.push_back({name, std::move(values)});
    }
    // Subdivided surfaces have the normals of their shape, whatever is authored.
    if (t.isSmooth() && subdivide(g, t)) {
        reading.drawable = !g.triangles.empty();
        return reading;
    }
    addFaces(g, t);
    if (t.isSmooth()) {
        g.addSmoothNormals(kSmoothCosine);
    } else {
        readNormals(prim, time, t, g);
        if (deformation) turnNormals(g.normals, *deformation, {t.indices.begin(), t.indices.end()});
    }
    reading.drawable = !g.triangles.empty();
    return reading;
}

} // namespace vesk::renderers::embree
