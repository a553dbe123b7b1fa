#include "scene_extraction.h"

#include "light_extraction.h"
#include "material_extraction.h"
#include "mesh_extraction.h"
#include "stage_reading.h"

#include <pxr/usd/usdGeom/camera.h>
#include <pxr/usd/usdGeom/metrics.h>
#include <pxr/usd/usdGeom/tokens.h>
#include <pxr/usd/usdGeom/xformable.h>
#include <vesk/base/logging.h>

#include <array>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

enum class PrimKind
{
    Other,
    Mesh,
    Points,
    Curves,
    Implicit
};

PrimKind kindOf(const TfToken& type)
{
    static const std::array<TfToken, 8> implicit = {
        TfToken("Sphere"),     TfToken("Cube"),    TfToken("Cone"),      TfToken("Cylinder"),
        TfToken("Cylinder_1"), TfToken("Capsule"), TfToken("Capsule_1"), TfToken("Plane")};
    static const TfToken mesh("Mesh");
    static const TfToken points("Points");
    static const TfToken curves("BasisCurves");
    if (type == mesh) return PrimKind::Mesh;
    if (type == points) return PrimKind::Points;
    if (type == curves) return PrimKind::Curves;
    return std::find(implicit.begin(), implicit.end(), type) != implicit.end() ? PrimKind::Implicit
                                                                               : PrimKind::Other;
}

/// What a prim hands down to its children.
struct Inherited
{
    GfMatrix4d toWorld{1.0};
    TfToken purpose;        ///< the nearest authored one, empty while there is none
    Primvar<Vec3> color;    ///< a constant display colour
    Primvar<float> opacity; ///< a constant display opacity
    SdfPath material;       ///< the bound material
    bool materialIsStronger = false;
};

class Walker
{
public:
    Walker(const UsdStageRefPtr& stage, const ExtractionRequest& request, GeometryCache& cache)
        : m_stage(stage), m_request(request), m_time(toTimeCode(request.time)), m_cache(cache)
    {}

    std::shared_ptr<const SceneSnapshot> walk()
    {
        m_snapshot = std::make_shared<SceneSnapshot>();
        m_snapshot->zUp = UsdGeomGetStageUpAxis(m_stage) == UsdGeomTokens->z;
        // The way down is a stack of our own: a stage may be nested deeper than a thread's stack allows.
        std::vector<std::pair<UsdPrim, Inherited>> pending;
        _pushChildren(m_stage->GetPseudoRoot(), Inherited(), pending);
        while (!pending.empty()) {
            auto [prim, inherited] = std::move(pending.back());
            pending.pop_back();
            if (_visit(prim, inherited)) _pushChildren(prim, inherited, pending);
        }
        return m_snapshot;
    }

private:
    void _pushChildren(const UsdPrim& prim, const Inherited& inherited,
                       std::vector<std::pair<UsdPrim, Inherited>>& pending)
    {
        const std::size_t first = pending.size();
        for (const UsdPrim& child : prim.GetFilteredChildren(UsdTraverseInstanceProxies())) {
            pending.emplace_back(child, inherited);
        }
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(first), pending.end());
    }

    // Adds the prim to the picture and turns what it inherits into what it hands down; false prunes.
    bool _visit(const UsdPrim& prim, Inherited& state)
    {
        if (readAttribute(prim, "visibility", m_time, TfToken()) == "invisible") return false;
        _applyTransform(prim, state);
        _applyPurpose(prim, state);
        _applyPrimvars(prim, state);
        if (m_request.sceneMaterials)
            state.material = boundMaterial(prim, state.material, state.materialIsStronger);
        if (prim.IsA<UsdGeomCamera>()) m_snapshot->cameraPaths.insert(prim.GetPath());
        if (_purposeIsShown(state.purpose)) _addItem(prim, state);
        if (auto light = readStageLight(prim, state.toWorld, m_time)) m_snapshot->lights.push_back(*light);
        return true;
    }

    void _applyTransform(const UsdPrim& prim, Inherited& state)
    {
        const UsdGeomXformable xformable(prim);
        if (!xformable) return;
        GfMatrix4d local(1.0);
        bool resets = false;
        if (!xformable.GetLocalTransformation(&local, &resets, m_time)) return;
        state.toWorld = resets ? local : local * state.toWorld;
    }

    // An authored purpose holds for the prim and everything below it that authors none.
    void _applyPurpose(const UsdPrim& prim, Inherited& state)
    {
        const UsdAttribute attribute = prim.GetAttribute(TfToken("purpose"));
        TfToken purpose;
        if (attribute && attribute.HasAuthoredValue() && attribute.Get(&purpose)) state.purpose = purpose;
    }

    bool _purposeIsShown(const TfToken& purpose) const
    {
        if (purpose.IsEmpty() || purpose == "default") return true;
        return purpose == (m_request.proxyPurpose ? "proxy" : "render");
    }

    void _applyPrimvars(const UsdPrim& prim, Inherited& state)
    {
        Primvar<Vec3> color = readVectorPrimvar(prim, "primvars:displayColor", m_time);
        if (color.interpolation == Interpolation::Constant) state.color = std::move(color);
        Primvar<float> opacity = readFloatPrimvar(prim, "primvars:displayOpacity", m_time);
        if (opacity.interpolation == Interpolation::Constant) state.opacity = std::move(opacity);
    }

    void _addItem(const UsdPrim& prim, const Inherited& state)
    {
        const PrimKind kind = kindOf(prim.GetTypeName());
        if (kind == PrimKind::Other) return;
        SceneItem item;
        item.path = prim.GetPath();
        item.geometry = _geometryOf(prim, kind);
        if (!item.geometry) return;
        item.localToWorld = state.toWorld;
        if (!_placeIsUsable(item)) return;
        item.material = _materialOf(state);
        if (!state.color.empty()) item.displayColor = state.color.values[0];
        if (!state.opacity.empty()) item.displayOpacity = state.opacity.values[0];
        if (prim.IsInstanceProxy()) {
            item.prototypePath = prim.GetPrimInPrototype().GetPath();
            item.instancePath = _outermostInstance(prim);
        }
        m_snapshot->items.push_back(std::move(item));
    }

    SdfPath _outermostInstance(const UsdPrim& prim) const
    {
        SdfPath outermost;
        for (UsdPrim p = prim.GetParent(); p && !p.IsPseudoRoot(); p = p.GetParent()) {
            if (p.IsInstance()) outermost = p.GetPath();
        }
        return outermost;
    }

    std::shared_ptr<const Geometry> _geometryOf(const UsdPrim& prim, PrimKind kind)
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
        if (prim.IsInstanceProxy()) m_cache.noteInstance();
        return entry.geometry;
    }

    ShapeReading _read(const UsdPrim& prim, PrimKind kind) const
    {
        switch (kind) {
        case PrimKind::Mesh:
            return readMesh(prim, m_time);
        case PrimKind::Points:
            return readPoints(prim, m_time);
        case PrimKind::Curves:
            return readCurves(prim, m_time);
        default:
            return readImplicitShape(prim, m_time);
        }
    }

    // A place that is not finite cannot be drawn; the bounds gather the others.
    bool _placeIsUsable(const SceneItem& item)
    {
        GfRange3d box;
        for (int corner = 0; corner < 8; ++corner) {
            const Vec3 low = item.geometry->lower;
            const Vec3 high = item.geometry->upper;
            const Vec3 p(corner & 1 ? high.x : low.x, corner & 2 ? high.y : low.y,
                         corner & 4 ? high.z : low.z);
            const GfVec3d world = item.localToWorld.Transform(p.toGfd());
            if (!(world.GetLength() < 1e18)) {
                VESK_LOG_WARN("Prim {} lies at a place that is not finite and is not drawn",
                              item.path.GetString());
                return false;
            }
            box.UnionWith(world);
        }
        m_snapshot->bounds.UnionWith(box);
        return true;
    }

    std::optional<Material> _materialOf(const Inherited& state)
    {
        if (state.material.IsEmpty()) return std::nullopt;
        auto [at, isNew] = m_materials.try_emplace(state.material);
        if (isNew) at->second = readMaterial(m_stage->GetPrimAtPath(state.material), m_time);
        return at->second;
    }

    UsdStageRefPtr m_stage;
    ExtractionRequest m_request;
    UsdTimeCode m_time;
    GeometryCache& m_cache;
    std::shared_ptr<SceneSnapshot> m_snapshot;
    std::map<SdfPath, std::optional<Material>> m_materials;
};

} // namespace

std::shared_ptr<const SceneSnapshot> extractScene(const UsdStageRefPtr& stage,
                                                  const ExtractionRequest& request, GeometryCache& cache)
{
    return Walker(stage, request, cache).walk();
}

std::optional<GfCamera> extractCamera(const UsdStageRefPtr& stage, const SdfPath& path, double time)
{
    if (!path.IsAbsolutePath() || !path.IsPrimPath()) return std::nullopt;
    const UsdGeomCamera camera(stage->GetPrimAtPath(path));
    if (!camera) return std::nullopt;
    return camera.GetCamera(toTimeCode(time));
}

} // namespace vesk::renderers::embree
