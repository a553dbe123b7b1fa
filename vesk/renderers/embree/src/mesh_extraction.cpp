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

} // namespace

void readDisplayPrimvars(const UsdPrim& prim, UsdTimeCode time, std::size_t faces, std::size_t points,
                         std::size_t corners, Geometry& g)
{
    g.colors = readVectorPrimvar(prim, "primvars:displayColor", time);
    if (!fits(g.colors, faces, points, corners)) g.colors = {};
    g.opacities = readFloatPrimvar(prim, "primvars:displayOpacity", time);
    if (!fits(g.opacities, faces, points, corners)) g.opacities = {};
}

ShapeReading readMesh(const UsdPrim& prim, UsdTimeCode time, const std::vector<std::string>& primvars)
{
    ShapeReading reading;
    Geometry& g = reading.geometry;
    const MeshTopology t = readTopology(prim, time);
    g.points = readPointPositions(prim, time);
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
    }
    reading.drawable = !g.triangles.empty();
    return reading;
}

namespace {

// Widths are diameters; without any, a point of a cloud is a hundredth of its extent wide.
std::vector<float> readRadii(const UsdPrim& prim, UsdTimeCode time, const std::vector<Vec3>& points)
{
    Primvar<float> widths = readFloatPrimvar(prim, "primvars:widths", time);
    if (widths.empty()) {
        const VtFloatArray authored = readAttribute(prim, "widths", time, VtFloatArray());
        widths.values.assign(authored.begin(), authored.end());
    }
    std::vector<float> radii(points.size(), 0.0f);
    for (std::size_t i = 0; i < radii.size(); ++i) {
        const std::size_t count = widths.values.size();
        const float width = count == 0 ? 1.0f : widths.values[count == points.size() ? i : 0];
        radii[i] = std::isfinite(width) ? std::max(0.5f * width, 0.0f) : 0.0f;
    }
    return radii;
}

bool allFinite(const std::vector<Vec3>& points)
{
    return std::all_of(points.begin(), points.end(), [](const Vec3& p) { return isFinite(p); });
}

Vec3 cubicPoint(const Vec3* p, float t, bool bezier, bool catmullRom)
{
    const float s = 1.0f - t;
    if (bezier)
        return p[0] * (s * s * s) + p[1] * (3 * s * s * t) + p[2] * (3 * s * t * t) + p[3] * (t * t * t);
    const float t2 = t * t;
    const float t3 = t2 * t;
    if (catmullRom) {
        return (p[0] * (-t3 + 2 * t2 - t) + p[1] * (3 * t3 - 5 * t2 + 2) + p[2] * (-3 * t3 + 4 * t2 + t) +
                p[3] * (t3 - t2)) *
               0.5f;
    }
    return (p[0] * (s * s * s) + p[1] * (3 * t3 - 6 * t2 + 4) + p[2] * (-3 * t3 + 3 * t2 + 3 * t + 1) +
            p[3] * t3) *
           (1.0f / 6.0f);
}

struct CurveBasis
{
    bool cubic = true;
    bool bezier = true;
    bool catmullRom = false;
    bool periodic = false;
};

CurveBasis readBasis(const UsdPrim& prim, UsdTimeCode time)
{
    CurveBasis basis;
    basis.cubic = readAttribute(prim, "type", time, TfToken("cubic")) == "cubic";
    const TfToken name = readAttribute(prim, "basis", time, TfToken("bezier"));
    basis.bezier = name == "bezier";
    basis.catmullRom = name == "catmullRom";
    basis.periodic = readAttribute(prim, "wrap", time, TfToken("nonperiodic")) == "periodic";
    return basis;
}

constexpr int kStepsPerSegment = 8;

// One curve as a chain of points; cubic segments are sampled evenly.
void sampleCurve(const std::vector<Vec3>& points, const std::vector<float>& radii, std::size_t first,
                 std::size_t count, const CurveBasis& basis, std::vector<Vec3>& outPoints,
                 std::vector<float>& outRadii)
{
    const auto at = [&](std::size_t i) {
        return first + (basis.periodic ? i % count : std::min(i, count - 1));
    };
    if (!basis.cubic) {
        for (std::size_t i = 0; i < count + (basis.periodic ? 1 : 0); ++i) {
            outPoints.push_back(points[at(i)]);
            outRadii.push_back(radii[at(i)]);
        }
        return;
    }
    const std::size_t stride = basis.bezier ? 3 : 1;
    const std::size_t segments = basis.periodic ? count / stride : count < 4 ? 0 : (count - 4) / stride + 1;
    for (std::size_t s = 0; s < segments; ++s) {
        const Vec3 p[4] = {points[at(s * stride)], points[at(s * stride + 1)], points[at(s * stride + 2)],
                           points[at(s * stride + 3)]};
        const float from = radii[at(s * stride + (basis.bezier ? 0 : 1))];
        const float to = radii[at(s * stride + (basis.bezier ? 3 : 2))];
        for (int i = s == 0 ? 0 : 1; i <= kStepsPerSegment; ++i) {
            const float t = static_cast<float>(i) / kStepsPerSegment;
            outPoints.push_back(cubicPoint(p, t, basis.bezier, basis.catmullRom));
            outRadii.push_back(from + (to - from) * t);
        }
    }
}

} // namespace

ShapeReading readPoints(const UsdPrim& prim, UsdTimeCode time)
{
    ShapeReading reading;
    Geometry& g = reading.geometry;
    g.kind = GeometryKind::Spheres;
    g.points = readPointPositions(prim, time);
    if (!allFinite(g.points)) {
        reading.problem = "has a point that is not finite";
        return reading;
    }
    g.radii = readRadii(prim, time, g.points);
    readDisplayPrimvars(prim, time, 1, g.points.size(), g.points.size(), g);
    reading.drawable = !g.points.empty();
    return reading;
}

ShapeReading readCurves(const UsdPrim& prim, UsdTimeCode time)
{
    ShapeReading reading;
    Geometry& g = reading.geometry;
    g.kind = GeometryKind::Curves;
    const std::vector<Vec3> points = readPointPositions(prim, time);
    const VtIntArray counts = readAttribute(prim, "curveVertexCounts", time, VtIntArray());
    std::size_t sum = 0;
    for (const int count : counts) {
        if (count < 0) reading.problem = "has a curve with a negative number of points";
        sum += static_cast<std::size_t>(std::max(count, 0));
    }
    if (sum > points.size()) reading.problem = "has curve vertex counts that exceed its points";
    if (!allFinite(points)) reading.problem = "has a point that is not finite";
    if (!reading.problem.empty()) return reading;

    const std::vector<float> radii = readRadii(prim, time, points);
    const CurveBasis basis = readBasis(prim, time);
    std::size_t first = 0;
    for (std::uint32_t curve = 0; curve < counts.size(); ++curve) {
        const auto count = static_cast<std::size_t>(counts[curve]);
        const std::size_t begin = g.points.size();
        if (count > 0) sampleCurve(points, radii, first, count, basis, g.points, g.radii);
        for (std::size_t p = begin; p + 1 < g.points.size(); ++p) {
            g.segments.push_back(static_cast<std::uint32_t>(p));
            g.segmentCurve.push_back(curve);
        }
        first += count;
    }
    readDisplayPrimvars(prim, time, counts.size(), points.size(), points.size(), g);
    if (g.colors.interpolation > Interpolation::Uniform) {
        g.colors.values.resize(1);
        g.colors.interpolation = Interpolation::Constant;
    }
    reading.drawable = !g.segments.empty();
    return reading;
}

} // namespace vesk::renderers::embree
