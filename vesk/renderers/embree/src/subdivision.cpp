#include "subdivision.h"

#include <opensubdiv/far/error.h>
#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>
#include <opensubdiv/far/topologyRefinerFactory.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

namespace Far = OpenSubdiv::Far;
namespace Sdc = OpenSubdiv::Sdc;
using Descriptor = Far::TopologyDescriptor;

constexpr std::size_t kWantedFaces = 1u << 16;
constexpr int kDeepestLevel = 5;

/// A value as the refiner sums it up.
template <class T>
struct Weighted
{
    T value{};
    void Clear(void* = nullptr) { value = T{}; }
    void AddWithWeight(const Weighted& other, float weight) { value += other.value * weight; }
};
template <class T>
using Values = std::vector<Weighted<T>>;

template <class T>
Values<T> weighted(const std::vector<T>& values)
{
    Values<T> result(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        result[i].value = values[i];
    return result;
}

/// Face-varying values of one primvar, equal ones at one point made one.
struct Channel
{
    std::vector<int> indices; ///< one a corner of the cage
    int count = 0;
};

template <class T>
Channel weld(const std::vector<T>& values, const VtIntArray& points, std::vector<T>& welded)
{
    Channel channel;
    std::map<std::pair<int, std::string>, int> known;
    for (std::size_t corner = 0; corner < points.size(); ++corner) {
        std::string bytes(sizeof(T), '\0');
        std::memcpy(bytes.data(), &values[corner], sizeof(T));
        const auto [at, isNew] = known.try_emplace({points[corner], std::move(bytes)}, channel.count);
        if (isNew) {
            welded.push_back(values[corner]);
            ++channel.count;
        }
        channel.indices.push_back(at->second);
    }
    return channel;
}

bool allows(const MeshTopology& t)
{
    const bool isLoop = t.scheme == SubdivisionScheme::Loop;
    if (t.indices.empty() || t.indices.size() > kMostCageCorners) return false;
    std::size_t first = 0;
    std::vector<int> face;
    for (const int count : t.counts) {
        if (count < 3 || (isLoop && count != 3)) return false;
        face.assign(t.indices.cbegin() + static_cast<std::ptrdiff_t>(first),
                    t.indices.cbegin() + static_cast<std::ptrdiff_t>(first) + count);
        std::sort(face.begin(), face.end());
        if (std::adjacent_find(face.begin(), face.end()) != face.end()) return false;
        first += static_cast<std::size_t>(count);
    }
    return true;
}

Sdc::Options optionsOf(const MeshTopology& t)
{
    Sdc::Options options;
    options.SetVtxBoundaryInterpolation(t.boundary == "none" ? Sdc::Options::VTX_BOUNDARY_NONE
                                        : t.boundary == "edgeOnly"
                                            ? Sdc::Options::VTX_BOUNDARY_EDGE_ONLY
                                            : Sdc::Options::VTX_BOUNDARY_EDGE_AND_CORNER);
    const std::map<std::string, Sdc::Options::FVarLinearInterpolation> rules = {
        {"none", Sdc::Options::FVAR_LINEAR_NONE},
        {"cornersOnly", Sdc::Options::FVAR_LINEAR_CORNERS_ONLY},
        {"cornersPlus1", Sdc::Options::FVAR_LINEAR_CORNERS_PLUS1},
        {"cornersPlus2", Sdc::Options::FVAR_LINEAR_CORNERS_PLUS2},
        {"boundaries", Sdc::Options::FVAR_LINEAR_BOUNDARIES},
        {"all", Sdc::Options::FVAR_LINEAR_ALL}};
    const auto rule = rules.find(t.faceVarying.GetString());
    options.SetFVarLinearInterpolation(rule == rules.end() ? Sdc::Options::FVAR_LINEAR_CORNERS_PLUS1
                                                           : rule->second);
    options.SetTriangleSubdivision(t.smoothTriangles ? Sdc::Options::TRI_SUB_SMOOTH
                                                     : Sdc::Options::TRI_SUB_CATMARK);
    return options;
}

/// One mesh on its way from its cage to its limit surface.
class Subdivider
{
public:
    Subdivider(Geometry& geometry, const MeshTopology& topology) : m_geometry(geometry), m_topology(topology)
    {}

    bool run()
    {
        _weldPrimvars();
        if (!_makeRefiner()) return false;
        _level();
        Geometry out;
        out.faceCount = m_geometry.faceCount;
        _addPoints(out);
        _addFaces(out);
        _addNormals(out);
        _addPrimvars(out);
        m_geometry = std::move(out);
        return true;
    }

private:
    using Level = Far::TopologyLevel;

    void _weldPrimvars()
    {
        const auto add = [this](const auto& primvar, auto& welded) {
            if (primvar.interpolation != Interpolation::FaceVarying) return;
            m_channels.push_back(weld(primvar.values, m_topology.indices, welded));
        };
        add(m_geometry.colors, m_colors);
        add(m_geometry.opacities, m_opacities);
        m_named.resize(m_geometry.primvars.size());
        for (std::size_t i = 0; i < m_named.size(); ++i)
            add(m_geometry.primvars[i].values, m_named[i]);
    }

    bool _makeRefiner()
    {
        Descriptor d;
        d.numVertices = static_cast<int>(m_geometry.points.size());
        d.numFaces = static_cast<int>(m_topology.counts.size());
        d.numVertsPerFace = m_topology.counts.cdata();
        d.vertIndicesPerFace = m_topology.indices.cdata();
        d.numCreases = static_cast<int>(m_topology.creaseWeights.size());
        d.creaseVertexIndexPairs = m_topology.creasePairs.data();
        d.creaseWeights = m_topology.creaseWeights.data();
        d.numCorners = static_cast<int>(m_topology.corners.size());
        d.cornerVertexIndices = m_topology.corners.data();
        d.cornerWeights = m_topology.cornerWeights.data();
        d.numHoles = static_cast<int>(m_topology.holes.size());
        d.holeIndices = m_topology.holes.data();
        d.isLeftHanded = m_topology.leftHanded;
        std::vector<Descriptor::FVarChannel> channels(m_channels.size());
        for (std::size_t i = 0; i < channels.size(); ++i) {
            channels[i].numValues = m_channels[i].count;
            channels[i].valueIndices = m_channels[i].indices.data();
        }
        d.numFVarChannels = static_cast<int>(channels.size());
        d.fvarChannels = channels.data();
        using Factory = Far::TopologyRefinerFactory<Descriptor>;
        const Factory::Options options(m_topology.scheme == SubdivisionScheme::Loop ? Sdc::SCHEME_LOOP
                                                                                    : Sdc::SCHEME_CATMARK,
                                       optionsOf(m_topology));
        m_refiner.reset(Factory::Create(d, options));
        return m_refiner != nullptr;
    }

    void _level()
    {
        std::size_t faces = m_topology.indices.size();
        m_depth = 1;
        while (m_depth < kDeepestLevel && faces * 4 <= kWantedFaces) {
            faces *= 4;
            ++m_depth;
        }
        Far::TopologyRefiner::UniformOptions options(m_depth);
        options.fullTopologyInLastLevel = true;
        m_refiner->RefineUniform(options);
    }

    // The last level's values, before they move to the limit.
    template <class T, class Step>
    Values<T> _refined(Values<T> values, const Step& step, int (Level::*count)() const) const
    {
        for (int level = 1; level <= m_depth; ++level) {
            Values<T> next(static_cast<std::size_t>((m_refiner->GetLevel(level).*count)()));
            step(level, values, next);
            values = std::move(next);
        }
        return values;
    }

    template <class T>
    Values<T> _refinedVertices(const std::vector<T>& base) const
    {
        const Far::PrimvarRefiner refiner(*m_refiner);
        return _refined<T>(
            weighted(base),
            [&](int level, const auto& from, auto& to) { refiner.Interpolate(level, from, to); },
            &Level::GetNumVertices);
    }

    void _addPoints(Geometry& out)
    {
        const Values<Vec3> last = _refinedVertices(m_geometry.points);
        Values<Vec3> limit(last.size());
        Values<Vec3> tangent1(last.size());
        Values<Vec3> tangent2(last.size());
        Far::PrimvarRefiner(*m_refiner).Limit(last, limit, tangent1, tangent2);
        for (std::size_t i = 0; i < limit.size(); ++i) {
            out.points.push_back(limit[i].value);
            m_limitNormals.push_back(cross(tangent1[i].value, tangent2[i].value));
        }
    }

    std::vector<int> _baseFaces() const
    {
        const Level& last = m_refiner->GetLevel(m_depth);
        std::vector<int> faces(static_cast<std::size_t>(last.GetNumFaces()));
        for (int f = 0; f < last.GetNumFaces(); ++f) {
            int face = f;
            for (int level = m_depth; level > 0; --level)
                face = m_refiner->GetLevel(level).GetFaceParentFace(face);
            faces[static_cast<std::size_t>(f)] = face;
        }
        return faces;
    }

    // The edges of the last level that lie on edges of the cage.
    std::vector<bool> _cageEdges() const
    {
        std::vector<bool> edges(static_cast<std::size_t>(m_refiner->GetLevel(0).GetNumEdges()), true);
        for (int level = 0; level < m_depth; ++level) {
            const Level& parent = m_refiner->GetLevel(level);
            std::vector<bool> next(static_cast<std::size_t>(m_refiner->GetLevel(level + 1).GetNumEdges()),
                                   false);
            for (int e = 0; e < parent.GetNumEdges(); ++e) {
                if (!edges[static_cast<std::size_t>(e)]) continue;
                const Far::ConstIndexArray children = parent.GetEdgeChildEdges(e);
                for (int c = 0; c < children.size(); ++c) {
                    if (children[c] >= 0) next[static_cast<std::size_t>(children[c])] = true;
                }
            }
            edges = std::move(next);
        }
        return edges;
    }

    void _addFaces(Geometry& out)
    {
        const Level& last = m_refiner->GetLevel(m_depth);
        const std::vector<int> base = _baseFaces();
        const std::vector<bool> cage = _cageEdges();
        std::uint32_t corner = 0;
        for (int f = 0; f < last.GetNumFaces(); ++f) {
            const Far::ConstIndexArray points = last.GetFaceVertices(f);
            const Far::ConstIndexArray edges = last.GetFaceEdges(f);
            const int n = points.size();
            for (int i = 0; i + 2 < n && !last.IsFaceHole(f); ++i) {
                const int k[3] = {0, i + 1, i + 2};
                Triangle triangle;
                std::uint8_t outline = 0;
                for (int j = 0; j < 3; ++j) {
                    triangle.point[j] = static_cast<std::uint32_t>(points[k[j]]);
                    out.corners.push_back(corner + static_cast<std::uint32_t>(k[j]));
                    const bool isRim = (k[j] + 1) % n == k[(j + 1) % 3];
                    if (isRim && cage[static_cast<std::size_t>(edges[k[j]])])
                        outline = static_cast<std::uint8_t>(outline | 1 << j);
                }
                out.triangles.push_back(triangle);
                out.faces.push_back(static_cast<std::uint32_t>(base[static_cast<std::size_t>(f)]));
                out.outlineEdges.push_back(outline);
            }
            corner += static_cast<std::uint32_t>(n);
        }
        m_cornerCount = corner;
    }

    bool _isSharp(const Level& level, int vertex) const
    {
        if (level.GetVertexSharpness(vertex) > 0.0f) return true;
        const Far::ConstIndexArray edges = level.GetVertexEdges(vertex);
        for (int e = 0; e < edges.size(); ++e) {
            if (level.GetEdgeFaces(edges[e]).size() == 2 && level.GetEdgeSharpness(edges[e]) > 0.0f)
                return true;
        }
        return false;
    }

    // The faces around a vertex that are reached from one of them without crossing a sharp edge.
    std::vector<int> _sideOf(const Level& level, int vertex, int face) const
    {
        std::vector<int> side = {face};
        const Far::ConstIndexArray edges = level.GetVertexEdges(vertex);
        for (std::size_t i = 0; i < side.size(); ++i) {
            for (int e = 0; e < edges.size(); ++e) {
                const Far::ConstIndexArray faces = level.GetEdgeFaces(edges[e]);
                if (faces.size() != 2 || level.GetEdgeSharpness(edges[e]) > 0.0f) continue;
                for (int k = 0; k < 2; ++k) {
                    if (faces[k] != side[i]) continue;
                    const int other = faces[1 - k];
                    if (std::find(side.begin(), side.end(), other) == side.end()) side.push_back(other);
                }
            }
        }
        return side;
    }

    Vec3 _faceNormal(const Level& level, const Geometry& out, int face) const
    {
        const Far::ConstIndexArray p = level.GetFaceVertices(face);
        const auto at = [&](int i) { return out.points[static_cast<std::size_t>(p[i])]; };
        return p.size() == 3 ? cross(at(1) - at(0), at(2) - at(0)) : cross(at(2) - at(0), at(3) - at(1));
    }

    void _addNormals(Geometry& out)
    {
        const Level& last = m_refiner->GetLevel(m_depth);
        out.normals.interpolation = Interpolation::FaceVarying;
        out.normals.values.resize(m_cornerCount);
        std::vector<bool> sharp(static_cast<std::size_t>(last.GetNumVertices()));
        for (int v = 0; v < last.GetNumVertices(); ++v)
            sharp[static_cast<std::size_t>(v)] = _isSharp(last, v);
        std::size_t corner = 0;
        for (int f = 0; f < last.GetNumFaces(); ++f) {
            const Far::ConstIndexArray points = last.GetFaceVertices(f);
            const Vec3 own = _faceNormal(last, out, f);
            for (int i = 0; i < points.size(); ++i, ++corner) {
                const auto v = static_cast<std::size_t>(points[i]);
                Vec3 normal = m_limitNormals[v];
                if (sharp[v]) {
                    normal = Vec3();
                    for (const int face : _sideOf(last, points[i], f))
                        normal += _faceNormal(last, out, face);
                }
                out.normals.values[corner] = normalized(normal, normalized(own));
            }
        }
    }

    template <class T>
    Primvar<T> _refine(const Primvar<T>& base, const std::vector<T>& welded, int& channel) const
    {
        const Far::PrimvarRefiner refiner(*m_refiner);
        Primvar<T> result;
        result.interpolation = base.interpolation;
        if (base.interpolation == Interpolation::Vertex) {
            const Values<T> last = _refinedVertices(base.values);
            Values<T> limit(last.size());
            refiner.Limit(last, limit);
            for (const auto& v : limit)
                result.values.push_back(v.value);
        } else if (base.interpolation == Interpolation::Varying) {
            const auto step = [&](int level, const auto& from, auto& to) {
                refiner.InterpolateVarying(level, from, to);
            };
            for (const auto& v : _refined<T>(weighted(base.values), step, &Level::GetNumVertices))
                result.values.push_back(v.value);
        } else if (base.interpolation == Interpolation::FaceVarying) {
            const int own = channel++;
            Values<T> values = weighted(welded);
            for (int level = 1; level <= m_depth; ++level) {
                Values<T> next(static_cast<std::size_t>(m_refiner->GetLevel(level).GetNumFVarValues(own)));
                refiner.InterpolateFaceVarying(level, values, next, own);
                values = std::move(next);
            }
            Values<T> limit(values.size());
            refiner.LimitFaceVarying(values, limit, own);
            const Level& last = m_refiner->GetLevel(m_depth);
            for (int f = 0; f < last.GetNumFaces(); ++f) {
                const Far::ConstIndexArray at = last.GetFaceFVarValues(f, own);
                for (int i = 0; i < at.size(); ++i)
                    result.values.push_back(limit[static_cast<std::size_t>(at[i])].value);
            }
        } else {
            result.values = base.values;
        }
        return result;
    }

    void _addPrimvars(Geometry& out)
    {
        int channel = 0;
        out.colors = _refine(m_geometry.colors, m_colors, channel);
        out.opacities = _refine(m_geometry.opacities, m_opacities, channel);
        for (std::size_t i = 0; i < m_named.size(); ++i) {
            out.primvars.push_back(
                {m_geometry.primvars[i].name, _refine(m_geometry.primvars[i].values, m_named[i], channel)});
        }
    }

    Geometry& m_geometry;
    const MeshTopology& m_topology;
    std::vector<Channel> m_channels;
    std::vector<Vec3> m_colors;
    std::vector<float> m_opacities;
    std::vector<std::vector<Vec4>> m_named;
    std::unique_ptr<Far::TopologyRefiner> m_refiner;
    int m_depth = 1;
    std::vector<Vec3> m_limitNormals;
    std::uint32_t m_cornerCount = 0;
};

} // namespace

bool subdivide(Geometry& geometry, const MeshTopology& topology)
{
    static std::once_flag quiet; // the library prints what it does not like; the caller is told instead
    std::call_once(quiet, [] {
        Far::SetErrorCallback([](Far::ErrorType, const char*) {});
        Far::SetWarningCallback([](const char*) {});
    });
    MeshTopology usable = topology;
    const auto isPoint = [&geometry](int i) {
        return i >= 0 && static_cast<std::size_t>(i) < geometry.points.size();
    };
    usable.creasePairs.clear();
    usable.creaseWeights.clear();
    for (std::size_t i = 0; i < topology.creaseWeights.size(); ++i) {
        const int a = topology.creasePairs[2 * i];
        const int b = topology.creasePairs[2 * i + 1];
        if (!isPoint(a) || !isPoint(b) || a == b) continue;
        usable.creasePairs.insert(usable.creasePairs.end(), {a, b});
        usable.creaseWeights.push_back(topology.creaseWeights[i]);
    }
    usable.corners.clear();
    usable.cornerWeights.clear();
    for (std::size_t i = 0; i < topology.corners.size(); ++i) {
        if (!isPoint(topology.corners[i])) continue;
        usable.corners.push_back(topology.corners[i]);
        usable.cornerWeights.push_back(topology.cornerWeights[i]);
    }
    return allows(usable) && Subdivider(geometry, usable).run();
}

} // namespace vesk::renderers::embree
