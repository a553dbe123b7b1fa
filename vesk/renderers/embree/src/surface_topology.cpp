#include "mesh_topology.h"
#include "stage_reading.h"

#include <pxr/base/gf/vec3i.h>
#include <pxr/base/gf/vec4i.h>

#include <algorithm>
#include <array>
#include <map>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr std::int64_t kMostPatchFaces = 1 << 26;

MeshTopology polygons(const UsdPrim& prim, UsdTimeCode time)
{
    MeshTopology topology;
    topology.scheme = SubdivisionScheme::None;
    topology.leftHanded = readAttribute(prim, "orientation", time, TfToken("rightHanded")) == "leftHanded";
    return topology;
}

void addTriangle(MeshTopology& topology, int a, int b, int c)
{
    topology.counts.push_back(3);
    for (const int index : {a, b, c})
        topology.indices.push_back(index);
}

// A face that two tetrahedra share lies inside; the others are seen from outside as they are named here.
void addOuterFaces(const VtVec4iArray& tetrahedra, MeshTopology& topology)
{
    struct Face
    {
        std::array<int, 3> corners;
        int uses = 0;
    };
    std::map<std::array<int, 3>, Face> faces;
    for (const GfVec4i& t : tetrahedra) {
        for (const std::array<int, 3>& face : {std::array<int, 3>{t[1], t[2], t[3]},
                                               {t[0], t[3], t[2]},
                                               {t[0], t[1], t[3]},
                                               {t[0], t[2], t[1]}}) {
            std::array<int, 3> key = face;
            std::sort(key.begin(), key.end());
            Face& known = faces[key];
            known.corners = face;
            ++known.uses;
        }
    }
    for (const auto& [key, face] : faces) {
        if (face.uses == 1) addTriangle(topology, face.corners[0], face.corners[1], face.corners[2]);
    }
}

} // namespace

MeshTopology readTetTopology(const UsdPrim& prim, UsdTimeCode time)
{
    MeshTopology topology = polygons(prim, time);
    const VtVec3iArray surface = readAttribute(prim, "surfaceFaceVertexIndices", time, VtVec3iArray());
    for (const GfVec3i& face : surface)
        addTriangle(topology, face[0], face[1], face[2]);
    if (surface.empty())
        addOuterFaces(readAttribute(prim, "tetVertexIndices", time, VtVec4iArray()), topology);
    return topology;
}

MeshTopology readPatchTopology(const UsdPrim& prim, UsdTimeCode time)
{
    MeshTopology topology = polygons(prim, time);
    const int columns = readAttribute(prim, "uVertexCount", time, 0);
    const int rows = readAttribute(prim, "vVertexCount", time, 0);
    if (columns < 2 || rows < 2 || std::int64_t(columns) * rows > kMostPatchFaces) return topology;
    for (int row = 0; row + 1 < rows; ++row) {
        for (int column = 0; column + 1 < columns; ++column) {
            const int first = row * columns + column;
            topology.counts.push_back(4);
            for (const int index : {first, first + 1, first + columns + 1, first + columns})
                topology.indices.push_back(index);
        }
    }
    return topology;
}

} // namespace vesk::renderers::embree
