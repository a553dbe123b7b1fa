#include "item_reading.h"

#include "material_binding.h"
#include "material_extraction.h"
#include "stage_reading.h"

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
    if (type == mesh) return Mesh;
    if (type == points) return Points;
    if (type == curves) return Curves;
    return std::find(implicit.begin(), implicit.end(), type) != implicit.end() ? Implicit : Other;
}

bool isFaceSubset(const UsdPrim& prim)
{
    static const TfToken type("GeomSubset");
    return prim.GetTypeName() == type;
}

} // namespace

std::optional<SceneItem> ItemReader::read(const UsdPrim& prim, const InheritedState& state, bool inPrototype)
{
    const int kind = kindOf(prim.GetTypeName());
    if (kind == Other) return std::nullopt;
    SceneItem item;
    item.path = prim.GetPath();
    item.geometry = _geometryOf(prim, kind, inPrototype);
    if (!item.geometry) return std::nullopt;
    if (m_request.sceneMaterials) {
        item.materials.whole = _materialAt(materialOf(prim, state));
        if (kind == Mesh) _readSubsets(prim, state, item);
    }
    item.displayColor = state.color;
    if (state.opacity) item.displayOpacity = *state.opacity;
    return item;
}

void ItemReader::_readSubsets(const UsdPrim& prim, const InheritedState& state, SceneItem& item)
{
    std::shared_ptr<std::vector<std::uint16_t>> faces;
    for (const UsdPrim& child : prim.GetFilteredChildren(UsdTraverseInstanceProxies())) {
        if (!isFaceSubset(child)) continue;
        InheritedState own = state;
        applyMaterialBinding(child, own);
        const SdfPath path = materialOf(child, own);
        if (path == state.material || item.materials.subsets.size() >= 65535) continue;
        if (readAttribute(child, "elementType", m_time, TfToken("face")) != "face") continue;
        const VtIntArray indices = readAttribute(child, "indices", m_time, VtIntArray());
        item.materials.subsets.push_back(_materialAt(path));
        const auto number = static_cast<std::uint16_t>(item.materials.subsets.size());
        if (!faces)
            faces = std::make_shared<std::vector<std::uint16_t>>(item.geometry->faceCount, std::uint16_t(0));
        for (const int index : indices) {
            if (index >= 0 && static_cast<std::size_t>(index) < faces->size())
                (*faces)[static_cast<std::size_t>(index)] = number;
        }
    }
    item.materials.faceSubset = std::move(faces);
}

std::shared_ptr<const Geometry> ItemReader::_geometryOf(const UsdPrim& prim, int kind, bool inPrototype)
{
    const SdfPath path = prim.GetPath();
    if (const GeometryCache::Entry* known = m_cache.find(path, m_request.time)) return known->geometry;
    ShapeReading reading = _read(prim, kind);
    if (!reading.problem.empty()) {
        VESK_LOG_WARN("Prim {} {} and is not drawn", path.GetString(), reading.problem);
    }
    GeometryCache::Entry entry;
    reading.geometry.computeBox();
    if (reading.drawable) entry.geometry = std::make_shared<const Geometry>(std::move(reading.geometry));
    entry.mayVary = shapeMayVary(prim);
    entry.time = m_request.time;
    m_cache.store(path, entry);
    if (inPrototype) m_cache.noteInstance();
    return entry.geometry;
}

ShapeReading ItemReader::_read(const UsdPrim& prim, int kind) const
{
    switch (kind) {
    case Mesh:
        return readMesh(prim, m_time);
    case Points:
        return readPoints(prim, m_time);
    case Curves:
        return readCurves(prim, m_time);
    default:
        return readImplicitShape(prim, m_time);
    }
}

std::shared_ptr<const Material> ItemReader::_materialAt(const SdfPath& path)
{
    if (path.IsEmpty()) return nullptr;
    auto [at, isNew] = m_materials.try_emplace(path);
    if (isNew) {
        m_materialPaths.insert(path);
        if (const auto material = readMaterial(m_stage->GetPrimAtPath(path), m_time))
            at->second = std::make_shared<const Material>(*material);
    }
    return at->second;
}

} // namespace vesk::renderers::embree
