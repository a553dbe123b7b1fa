#include "item_reading.h"

#include "material_binding.h"
#include "material_extraction.h"
#include "stage_reading.h"

#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/subset.h>
#include <vesk/base/logging.h>

#include <algorithm>
#include <array>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

enum Kind : int
{
    Other,
    Mesh,
    Points,
    Curves,
    Implicit
};

int kindOf(const TfToken& type)
{
    static const std::array<TfToken, 8> implicit = {
        TfToken("Sphere"),     TfToken("Cube"),    TfToken("Cone"),      TfToken("Cylinder"),
        TfToken("Cylinder_1"), TfToken("Capsule"), TfToken("Capsule_1"), TfToken("Plane")};
    static const TfToken mesh("Mesh");
    static const TfToken points("Points");
    static const TfToken curves("BasisCurves");
    static const std::array<TfToken, 2> surfaces = {TfToken("TetMesh"), TfToken("NurbsPatch")};
    static const std::array<TfToken, 2> chains = {TfToken("HermiteCurves"), TfToken("NurbsCurves")};
    if (type == mesh) return Mesh;
    if (type == points) return Points;
    if (type == curves) return Curves;
    if (std::find(surfaces.begin(), surfaces.end(), type) != surfaces.end()) return Mesh;
    if (std::find(chains.begin(), chains.end(), type) != chains.end()) return Curves;
    return std::find(implicit.begin(), implicit.end(), type) != implicit.end() ? Implicit : Other;
}

bool isFaceSubset(const UsdPrim& prim)
{
    static const TfToken type("GeomSubset");
    return prim.GetTypeName() == type;
}

std::vector<std::string> primvarsOf(const MaterialSet& set)
{
    std::set<std::string> names;
    const auto add = [&names](const std::shared_ptr<const Material>& material) {
        if (material) names.insert(material->primvars.begin(), material->primvars.end());
    };
    add(set.whole);
    for (const auto& material : set.subsets)
        add(material);
    return {names.begin(), names.end()};
}

template <class Subsets>
std::shared_ptr<const std::vector<std::uint16_t>> facesOf(const Subsets& subsets, std::size_t faceCount)
{
    if (subsets.empty()) return nullptr;
    auto faces = std::make_shared<std::vector<std::uint16_t>>(faceCount, std::uint16_t(0));
    for (const auto& subset : subsets) {
        for (const int face : subset.faces) {
            if (face >= 0 && static_cast<std::size_t>(face) < faceCount)
                (*faces)[static_cast<std::size_t>(face)] = subset.material;
        }
    }
    return faces;
}

} // namespace

std::optional<SceneItem> ItemReader::read(const UsdPrim& prim, const InheritedState& state, bool inPrototype)
{
    const int kind = kindOf(prim.GetTypeName());
    if (kind == Other) return std::nullopt;
    SceneItem item;
    item.path = prim.GetPath();
    std::vector<FaceSubset> subsets;
    if (m_request.sceneMaterials) {
        item.materials.whole = _materialAt(materialOf(prim, state));
        if (kind == Mesh) subsets = _readSubsets(prim, state, item.materials);
    }
    item.geometry = _geometryOf(prim, kind, inPrototype, primvarsOf(item.materials));
    if (!item.geometry) return std::nullopt;
    item.materials.faceSubset = facesOf(subsets, item.geometry->faceCount);
    item.displayColor = state.color;
    if (state.opacity) item.displayOpacity = *state.opacity;
    return item;
}

std::vector<ItemReader::FaceSubset> ItemReader::_readSubsets(const UsdPrim& prim, const InheritedState& state,
                                                             MaterialSet& set)
{
    std::vector<FaceSubset> subsets;
    for (const UsdPrim& child : prim.GetFilteredChildren(UsdTraverseInstanceProxies())) {
        if (!isFaceSubset(child)) continue;
        InheritedState own = state;
        applyMaterialBinding(child, own);
        const SdfPath path = materialOf(child, own);
        if (path == state.material || set.subsets.size() >= 65535) continue;
        if (readAttribute(child, "elementType", m_time, TfToken("face")) != "face") continue;
        set.subsets.push_back(_materialAt(path));
        subsets.push_back({readAttribute(child, "indices", m_time, VtIntArray()),
                           static_cast<std::uint16_t>(set.subsets.size())});
    }
    return subsets;
}

std::shared_ptr<const Geometry> ItemReader::_geometryOf(const UsdPrim& prim, int kind, bool inPrototype,
                                                        const std::vector<std::string>& primvars)
{
    const SdfPath path = prim.GetPath();
    // What a skeleton deforms changes with prims elsewhere: it is read whenever it is looked at.
    const bool isDeformed = kind == Mesh && m_skeletons.isBound(prim);
    const GeometryCache::Entry* known = isDeformed ? nullptr : m_cache.find(path, m_request.time, primvars);
    if (known) {
        m_shapesMayVary |= known->mayVary;
        return known->geometry;
    }
    ShapeReading reading = _read(prim, kind, primvars);
    if (!reading.problem.empty()) {
        VESK_LOG_WARN("Prim {} {} and is not drawn", path.GetString(), reading.problem);
    }
    GeometryCache::Entry entry;
    reading.geometry.computeBox();
    if (reading.drawable) entry.geometry = std::make_shared<const Geometry>(std::move(reading.geometry));
    entry.mayVary = shapeMayVary(prim);
    m_shapesMayVary |= isDeformed || entry.mayVary;
    entry.time = m_request.time;
    entry.primvars = primvars;
    if (isDeformed) return entry.geometry;
    m_cache.store(path, entry);
    if (inPrototype) m_cache.noteInstance();
    return entry.geometry;
}

ShapeReading ItemReader::_read(const UsdPrim& prim, int kind, const std::vector<std::string>& primvars)
{
    switch (kind) {
    case Mesh: {
        std::optional<Deformation> deformation;
        if (m_skeletons.isBound(prim)) deformation = m_skeletons.read(prim, countPoints(prim, m_time));
        return readMesh(prim, m_time, primvars, deformation ? &*deformation : nullptr);
    }
    case Points:
        return readPoints(prim, m_time);
    case Curves:
        return readCurves(prim, m_time);
    default:
        return readImplicitShape(prim, m_time);
    }
}

bool ItemReader::materialsMayVary() const
{
    for (const SdfPath& path : m_materialPaths) {
        const UsdPrim material = m_stage->GetPrimAtPath(path);
        if (!material) continue;
        for (const UsdPrim& prim : UsdPrimRange(material)) {
            if (anyAttributeMayVary(prim)) return true;
        }
    }
    return false;
}

std::shared_ptr<const Material> ItemReader::_materialAt(const SdfPath& path)
{
    if (path.IsEmpty()) return nullptr;
    auto [at, isNew] = m_materials.try_emplace(path);
    if (isNew) {
        m_materialPaths.insert(path);
        if (const auto material = readMaterial(m_stage->GetPrimAtPath(path), m_time, m_textures))
            at->second = std::make_shared<const Material>(*material);
    }
    return at->second;
}

} // namespace vesk::renderers::embree
