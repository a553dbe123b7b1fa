#include "mesh_extraction.h"
#include "stage_reading.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>

#include <algorithm>
#include <array>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr int kStepsPerSegment = 8;

bool allFinite(const std::vector<Vec3>& points)
{
    return std::all_of(points.begin(), points.end(), [](const Vec3& p) { return isFinite(p); });
}

/// How control points make a curve.
enum class Basis : std::uint8_t
{
    Linear,
    Bezier,
    BSpline,
    CatmullRom
};

/// The curves of one prim: control points in a row, curve after curve.
struct CurveSet
{
    std::vector<Vec3> points;
    std::vector<std::size_t> counts;
    Basis basis = Basis::Linear;
    bool periodic = false;
    bool pinned = false; ///< reaches from the first control point to the last one, whatever the basis
};

/// One point of a chain as a mix of control points and of the values between segments.
struct ChainPoint
{
    std::array<std::size_t, 4> points{};
    std::array<float, 4> weights{};
    std::size_t varying[2] = {0, 0};
    float t = 0.0f;
    std::size_t curve = 0;
};

std::array<float, 4> weightsAt(Basis basis, float t)
{
    const float s = 1.0f - t;
    const float t2 = t * t;
    const float t3 = t2 * t;
    switch (basis) {
    case Basis::Bezier:
        return {s * s * s, 3 * s * s * t, 3 * s * t2, t3};
    case Basis::CatmullRom:
        return {0.5f * (-t3 + 2 * t2 - t), 0.5f * (3 * t3 - 5 * t2 + 2), 0.5f * (-3 * t3 + 4 * t2 + t),
                0.5f * (t3 - t2)};
    case Basis::BSpline:
        return {s * s * s / 6, (3 * t3 - 6 * t2 + 4) / 6, (-3 * t3 + 3 * t2 + 3 * t + 1) / 6, t3 / 6};
    default:
        return {s, t, 0.0f, 0.0f};
    }
}

std::size_t segmentsOf(const CurveSet& set, std::size_t count)
{
    if (set.basis == Basis::Linear)
        return set.periodic ? (count > 1 ? count : 0) : std::max<std::size_t>(count, 1) - 1;
    const std::size_t stride = set.basis == Basis::Bezier ? 3 : 1;
    if (set.periodic) return count >= stride ? count / stride : 0;
    if (set.pinned && stride == 1) return count >= 2 ? count - 1 : 0;
    return count < 4 ? 0 : (count - 4) / stride + 1;
}

/// Works out the chains of all curves.
class ChainMaker
{
public:
    explicit ChainMaker(const CurveSet& set) : m_set(set)
    {
        std::size_t first = 0;
        for (std::size_t curve = 0; curve < set.counts.size(); ++curve) {
            _addCurve(curve, first, set.counts[curve]);
            first += set.counts[curve];
        }
    }

    const std::vector<ChainPoint>& points() const { return m_points; }
    /// The chain points that end a curve: no segment begins there.
    const std::vector<std::size_t>& ends() const { return m_ends; }
    std::size_t varyingCount() const { return m_varying; }

private:
    void _addCurve(std::size_t curve, std::size_t first, std::size_t count)
    {
        const std::size_t segments = segmentsOf(m_set, count);
        const std::size_t varying = m_set.periodic ? segments : segments + 1;
        const int steps = m_set.basis == Basis::Linear ? 1 : kStepsPerSegment;
        for (std::size_t s = 0; s < segments; ++s) {
            for (int i = s == 0 ? 0 : 1; i <= steps; ++i) {
                ChainPoint p = _pointOf(s, first, count, static_cast<float>(i) / static_cast<float>(steps));
                p.varying[0] = m_varying + s;
                p.varying[1] = m_varying + (s + 1) % varying;
                p.curve = curve;
                m_points.push_back(p);
            }
        }
        if (segments > 0) m_ends.push_back(m_points.size() - 1);
        m_varying += varying;
    }

    ChainPoint _pointOf(std::size_t segment, std::size_t first, std::size_t count, float t) const
    {
        ChainPoint p;
        p.t = t;
        p.weights = weightsAt(m_set.basis, t);
        const auto size = static_cast<std::ptrdiff_t>(count);
        const bool shifts = m_set.pinned && !m_set.periodic && m_set.basis > Basis::Bezier;
        const std::ptrdiff_t stride = m_set.basis == Basis::Bezier ? 3 : 1;
        const std::ptrdiff_t start = static_cast<std::ptrdiff_t>(segment) * stride - (shifts ? 1 : 0);
        std::array<float, 4> folded = p.weights;
        for (std::ptrdiff_t i = 0; i < 4; ++i) {
            const std::ptrdiff_t at = start + i;
            const std::ptrdiff_t inside =
                m_set.periodic ? at % size : std::clamp<std::ptrdiff_t>(at, 0, size - 1);
            p.points[static_cast<std::size_t>(i)] = first + static_cast<std::size_t>(inside);
            if (!shifts || at == inside) continue;
            // Beyond an end the curve goes on as its last two points do: 2 a - b.
            const std::size_t own = static_cast<std::size_t>(i);
            const std::size_t neighbour = at < 0 ? own + 2 : own - 2;
            folded[own] += p.weights[own];
            folded[neighbour] -= p.weights[own];
        }
        p.weights = folded;
        return p;
    }

    const CurveSet& m_set;
    std::vector<ChainPoint> m_points;
    std::vector<std::size_t> m_ends;
    std::size_t m_varying = 0;
};

// The values of a primvar along the chains; empty where they do not fit the curves.
template <class T>
std::vector<T> alongChains(const Primvar<T>& primvar, const ChainMaker& chains, const CurveSet& set)
{
    std::vector<T> result;
    const std::size_t count = primvar.values.size();
    if (count == 0) return result;
    const bool byPoint = count == set.points.size() && primvar.interpolation != Interpolation::Varying;
    const bool byVarying = !byPoint && count == chains.varyingCount();
    const bool byCurve = !byPoint && !byVarying && count == set.counts.size();
    if (!byPoint && !byVarying && !byCurve && count != 1) return result;
    result.reserve(chains.points().size());
    for (const ChainPoint& p : chains.points()) {
        if (byPoint) {
            T sum = primvar.values[p.points[0]] * p.weights[0];
            for (std::size_t i = 1; i < 4; ++i)
                sum = sum + primvar.values[p.points[i]] * p.weights[i];
            result.push_back(sum);
        } else if (byVarying) {
            result.push_back(primvar.values[p.varying[0]] * (1.0f - p.t) +
                             primvar.values[p.varying[1]] * p.t);
        } else {
            result.push_back(primvar.values[byCurve ? p.curve : 0]);
        }
    }
    return result;
}

// Widths are diameters, 1 where there are none.
Primvar<float> readWidths(const UsdPrim& prim, UsdTimeCode time)
{
    Primvar<float> widths = readFloatPrimvar(prim, "primvars:widths", time);
    if (widths.empty()) {
        const VtFloatArray authored = readAttribute(prim, "widths", time, VtFloatArray());
        widths.values.assign(authored.begin(), authored.end());
        widths.interpolation = Interpolation::Vertex;
    }
    return widths;
}

float radiusOf(float width) { return std::isfinite(width) ? std::max(0.5f * width, 0.0f) : 0.0f; }

Basis readBasis(const UsdPrim& prim, UsdTimeCode time)
{
    if (prim.GetTypeName() == "NurbsCurves") return Basis::Linear;
    if (prim.GetTypeName() == "HermiteCurves") return Basis::Bezier;
    if (readAttribute(prim, "type", time, TfToken("cubic")) != "cubic") return Basis::Linear;
    const TfToken name = readAttribute(prim, "basis", time, TfToken("bezier"));
    return name == "bezier" ? Basis::Bezier : name == "catmullRom" ? Basis::CatmullRom : Basis::BSpline;
}

// Points and tangents become the control points of Bezier curves.
void toBezier(CurveSet& set, const VtVec3fArray& tangents)
{
    std::vector<Vec3> controls;
    std::size_t first = 0;
    for (std::size_t& count : set.counts) {
        for (std::size_t i = 0; i < count; ++i) {
            const Vec3 point = set.points[first + i];
            const Vec3 third = Vec3(tangents[first + i]) * (1.0f / 3.0f);
            if (i > 0) controls.push_back(point - third);
            controls.push_back(point);
            if (i + 1 < count) controls.push_back(point + third);
        }
        first += count;
        count = count > 0 ? 3 * count - 2 : 0;
    }
    set.points = std::move(controls);
}

// Returns what is wrong, empty where nothing is.
std::string readCurveSet(const UsdPrim& prim, UsdTimeCode time, CurveSet& set)
{
    set.points = readPointPositions(prim, time);
    std::size_t sum = 0;
    for (const int count : readAttribute(prim, "curveVertexCounts", time, VtIntArray())) {
        if (count < 0) return "has a curve with a negative number of points";
        set.counts.push_back(static_cast<std::size_t>(count));
        sum += set.counts.back();
    }
    if (sum > set.points.size()) return "has curve vertex counts that exceed its points";
    if (!allFinite(set.points)) return "has a point that is not finite";
    set.points.resize(sum);
    set.basis = readBasis(prim, time);
    const TfToken wrap = readAttribute(prim, "wrap", time, TfToken("nonperiodic"));
    set.periodic = wrap == "periodic";
    set.pinned = wrap == "pinned";
    if (prim.GetTypeName() != "HermiteCurves") return {};
    const VtVec3fArray tangents = readAttribute(prim, "tangents", time, VtVec3fArray());
    if (tangents.size() < sum) return "has not as many tangents as points";
    toBezier(set, tangents);
    return allFinite(set.points) ? std::string() : "has a tangent that is not finite";
}

// Gives a primvar of the curves' points to those of their chains.
template <class T>
void follow(Primvar<T>& primvar, const ChainMaker& chains, const CurveSet& set)
{
    if (primvar.interpolation <= Interpolation::Constant) return;
    if (primvar.interpolation == Interpolation::Uniform && primvar.values.size() >= set.counts.size()) return;
    primvar.values = alongChains(primvar, chains, set);
    primvar.interpolation = primvar.values.empty() ? Interpolation::None : Interpolation::Vertex;
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
    const Primvar<float> widths = readWidths(prim, time);
    const bool each = widths.values.size() == g.points.size();
    for (std::size_t i = 0; i < g.points.size(); ++i)
        g.radii.push_back(radiusOf(widths.values.empty() ? 1.0f : widths.values[each ? i : 0]));
    readDisplayPrimvars(prim, time, 1, g.points.size(), g.points.size(), g);
    reading.drawable = !g.points.empty();
    return reading;
}

ShapeReading readCurves(const UsdPrim& prim, UsdTimeCode time)
{
    ShapeReading reading;
    Geometry& g = reading.geometry;
    CurveSet set;
    reading.problem = readCurveSet(prim, time, set);
    if (!reading.problem.empty()) return reading;
    g.kind = GeometryKind::Curves;
    g.faceCount = set.counts.size();
    const ChainMaker chains(set);
    const std::vector<float> widths = alongChains(readWidths(prim, time), chains, set);
    std::size_t end = 0;
    for (std::size_t i = 0; i < chains.points().size(); ++i) {
        const ChainPoint& p = chains.points()[i];
        Vec3 place;
        for (std::size_t k = 0; k < 4; ++k)
            place += set.points[p.points[k]] * p.weights[k];
        g.points.push_back(place);
        g.radii.push_back(radiusOf(widths.empty() ? 1.0f : widths[i]));
        if (i == chains.ends()[end]) {
            ++end;
            continue;
        }
        g.segments.push_back(static_cast<std::uint32_t>(i));
        g.segmentCurve.push_back(static_cast<std::uint32_t>(p.curve));
    }
    g.colors = readVectorPrimvar(prim, "primvars:displayColor", time);
    g.opacities = readFloatPrimvar(prim, "primvars:displayOpacity", time);
    follow(g.colors, chains, set);
    follow(g.opacities, chains, set);
    reading.drawable = !g.segments.empty();
    return reading;
}

} // namespace vesk::renderers::embree
