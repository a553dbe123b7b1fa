#include "mesh_topology.h"

#include "stage_reading.h"

#include <algorithm>
#include <unordered_set>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

SubdivisionScheme schemeOf(const TfToken& token)
{
    if (token == "none") return SubdivisionScheme::None;
    if (token == "bilinear") return SubdivisionScheme::Bilinear;
    if (token == "loop") return SubdivisionScheme::Loop;
    return SubdivisionScheme::CatmullClark;
}

// Creases are chains of points; a chain has one sharpness, or one for each of its edges.
void readCreases(const UsdPrim& prim, UsdTimeCode time, MeshTopology& t)
{
    const VtIntArray indices = readAttribute(prim, "creaseIndices", time, VtIntArray());
    const VtIntArray lengths = readAttribute(prim, "creaseLengths", time, VtIntArray());
    const VtFloatArray sharpness = readAttribute(prim, "creaseSharpnesses", time, VtFloatArray());
    const bool isPerChain = sharpness.size() == lengths.size();
    std::size_t at = 0;
    std::size_t edge = 0;
    for (std::size_t chain = 0; chain < lengths.size(); ++chain) {
        const int length = lengths[chain];
        if (length < 2 || at + static_cast<std::size_t>(length) > indices.size()) return;
        for (int i = 0; i + 1 < length; ++i, ++edge) {
            const std::size_t weight = isPerChain ? chain : edge;
            if (weight >= sharpness.size()) return;
            const std::size_t first = at + static_cast<std::size_t>(i);
            if (!(sharpness[weight] > 0.0f)) continue;
            t.creasePairs.push_back(indices[first]);
            t.creasePairs.push_back(indices[first + 1]);
            t.creaseWeights.push_back(std::min(sharpness[weight], 10.0f));
        }
        at += static_cast<std::size_t>(length);
    }
}

void readCorners(const UsdPrim& prim, UsdTimeCode time, MeshTopology& t)
{
    const VtIntArray indices = readAttribute(prim, "cornerIndices", time, VtIntArray());
    const VtFloatArray sharpness = readAttribute(prim, "cornerSharpnesses", time, VtFloatArray());
    for (std::size_t i = 0; i < std::min(indices.size(), sharpness.size()); ++i) {
        if (!(sharpness[i] > 0.0f)) continue;
        t.corners.push_back(indices[i]);
        t.cornerWeights.push_back(std::min(sharpness[i], 10.0f));
    }
}

/// One face on its way to triangles: its corners and their places.
class FaceCutter
{
public:
    FaceCutter(Geometry& geometry, const MeshTopology& topology, std::uint32_t face,
               std::uint32_t firstCorner)
        : m_geometry(geometry),
          m_topology(topology),
          m_face(face),
          m_first(firstCorner),
          m_count(topology.counts[face])
    {}

    void cut()
    {
        if (m_count < 3) return;
        if (m_count > 3 && m_count <= kMostEars && !_isConvex()) {
            _cutEars();
            return;
        }
        for (int i = 0; i + 2 < m_count; ++i)
            _add(0, i + 1, i + 2);
    }

private:
    static constexpr int kMostEars = 512; // the search for ears grows with the square of the corners

    Vec3 _point(int corner) const
    {
        return m_geometry
            .points[static_cast<std::size_t>(m_topology.indices[m_first + static_cast<unsigned>(corner)])];
    }

    bool _isConvex()
    {
        for (int i = 1; i + 1 < m_count; ++i)
            m_normal += cross(_point(i) - _point(0), _point(i + 1) - _point(0));
        for (int i = 0; i < m_count; ++i) {
            const Vec3 a = _point((i + m_count - 1) % m_count);
            const Vec3 b = _point(i);
            if (dot(cross(b - a, _point((i + 1) % m_count) - b), m_normal) < 0.0f) return false;
        }
        return true;
    }

    bool _isEar(const std::vector<int>& rest, std::size_t i) const
    {
        const std::size_t n = rest.size();
        const Vec3 a = _point(rest[(i + n - 1) % n]);
        const Vec3 b = _point(rest[i]);
        const Vec3 c = _point(rest[(i + 1) % n]);
        if (dot(cross(b - a, c - b), m_normal) <= 0.0f) return false;
        for (std::size_t k = 0; k < n - 3; ++k) {
            const Vec3 p = _point(rest[(i + 2 + k) % n]);
            const bool inside = dot(cross(b - a, p - a), m_normal) >= 0.0f &&
                                dot(cross(c - b, p - b), m_normal) >= 0.0f &&
                                dot(cross(a - c, p - c), m_normal) >= 0.0f;
            if (inside && !(p == a) && !(p == b) && !(p == c)) return false;
        }
        return true;
    }

    void _cutEars()
    {
        std::vector<int> rest;
        for (int i = 0; i < m_count; ++i)
            rest.push_back(i);
        while (rest.size() > 3) {
            std::size_t ear = 0;
            while (ear < rest.size() && !_isEar(rest, ear))
                ++ear;
            if (ear == rest.size()) ear = 0; // a face that crosses itself has none: any cut will do
            const std::size_t n = rest.size();
            _add(rest[(ear + n - 1) % n], rest[ear], rest[(ear + 1) % n]);
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(ear));
        }
        _add(rest[0], rest[1], rest[2]);
    }

    bool _isRim(int a, int b) const { return (a + 1) % m_count == b || (b + 1) % m_count == a; }

    void _add(int a, int b, int c)
    {
        int corner[3] = {a, b, c};
        if (m_topology.leftHanded) std::swap(corner[1], corner[2]);
        Triangle triangle;
        std::uint8_t edges = 0;
        for (int k = 0; k < 3; ++k) {
            const std::uint32_t at = m_first + static_cast<std::uint32_t>(corner[k]);
            triangle.point[k] = static_cast<std::uint32_t>(m_topology.indices[at]);
            m_geometry.corners.push_back(at);
            if (_isRim(corner[k], corner[(k + 1) % 3])) edges = static_cast<std::uint8_t>(edges | 1 << k);
        }
        m_geometry.triangles.push_back(triangle);
        m_geometry.faces.push_back(m_face);
        m_geometry.outlineEdges.push_back(edges);
    }

    Geometry& m_geometry;
    const MeshTopology& m_topology;
    std::uint32_t m_face;
    std::uint32_t m_first;
    int m_count;
    Vec3 m_normal;
};

} // namespace

MeshTopology readTopology(const UsdPrim& prim, UsdTimeCode time)
{
    MeshTopology t;
    t.counts = readAttribute(prim, "faceVertexCounts", time, VtIntArray());
    t.indices = readAttribute(prim, "faceVertexIndices", time, VtIntArray());
    for (const int hole : readAttribute(prim, "holeIndices", time, VtIntArray())) {
        if (hole >= 0 && static_cast<std::size_t>(hole) < t.counts.size()) t.holes.push_back(hole);
    }
    t.leftHanded = readAttribute(prim, "orientation", time, TfToken("rightHanded")) == "leftHanded";
    t.scheme = schemeOf(readAttribute(prim, "subdivisionScheme", time, TfToken("catmullClark")));
    t.boundary = readAttribute(prim, "interpolateBoundary", time, TfToken("edgeAndCorner"));
    t.faceVarying = readAttribute(prim, "faceVaryingLinearInterpolation", time, TfToken("cornersPlus1"));
    t.smoothTriangles =
        readAttribute(prim, "triangleSubdivisionRule", time, TfToken("catmullClark")) == "smooth";
    readCreases(prim, time, t);
    readCorners(prim, time, t);
    return t;
}

std::string problemOf(const MeshTopology& t, const std::vector<Vec3>& points)
{
    std::int64_t sum = 0;
    for (const int count : t.counts) {
        if (count < 0) return "has a face with a negative number of corners";
        sum += count;
    }
    if (sum != static_cast<std::int64_t>(t.indices.size())) {
        return "has face vertex counts that do not sum to the number of its face vertex indices";
    }
    for (const int index : t.indices) {
        if (index < 0 || static_cast<std::size_t>(index) >= points.size()) {
            return "has a face vertex index out of range";
        }
    }
    for (const Vec3& p : points) {
        if (!isFinite(p)) return "has a point that is not finite";
    }
    return {};
}

void addFaces(Geometry& g, const MeshTopology& t)
{
    const std::unordered_set<int> holes(t.holes.begin(), t.holes.end());
    std::uint32_t corner = 0;
    for (std::uint32_t face = 0; face < t.counts.size(); ++face) {
        if (!holes.count(static_cast<int>(face))) FaceCutter(g, t, face, corner).cut();
        corner += static_cast<std::uint32_t>(t.counts[face]);
    }
}

} // namespace vesk::renderers::embree
