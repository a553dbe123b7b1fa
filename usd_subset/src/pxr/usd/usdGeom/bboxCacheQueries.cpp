#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>

#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

// ---- Overrides ----

GfBBox3d UsdGeomBBoxCache::ComputeWorldBoundWithOverrides(
    const UsdPrim& prim, const SdfPathSet& pathsToSkip, const GfMatrix4d& primOverride,
    const TfHashMap<SdfPath, GfMatrix4d, SdfPath::Hash>& ctmOverrides)
{
    return _ComputeWithOverrides(prim, pathsToSkip, &primOverride, ctmOverrides);
}

GfBBox3d
UsdGeomBBoxCache::ComputeUntransformedBound(const UsdPrim& prim, const SdfPathSet& pathsToSkip,
                                            const TfHashMap<SdfPath, GfMatrix4d, SdfPath::Hash>& ctmOverrides)
{
    return _ComputeWithOverrides(prim, pathsToSkip, nullptr, ctmOverrides);
}

GfBBox3d
UsdGeomBBoxCache::_ComputeWithOverrides(const UsdPrim& prim, const SdfPathSet& pathsToSkip,
                                        const GfMatrix4d* primOverride,
                                        const TfHashMap<SdfPath, GfMatrix4d, SdfPath::Hash>& ctmOverrides)
{
    GfBBox3d result;
    if (!prim) {
        TF_CODING_ERROR("Bounds cannot be computed of %s.", UsdDescribe(prim).c_str());
        return result;
    }
    // Above what is skipped or moved, each child has to be looked at on its own.
    std::unordered_set<SdfPath, SdfPath::Hash> mixed;
    const auto addAncestors = [&mixed](const SdfPath& path) {
        for (SdfPath it = path.GetParentPath(); !it.IsEmpty() && mixed.insert(it).second;) {
            it = it.GetParentPath();
        }
    };
    for (const SdfPath& path : pathsToSkip) {
        addAncestors(path);
    }
    for (const auto& [path, matrix] : ctmOverrides) {
        addAncestors(path);
    }
    UsdPrimRange range(prim);
    for (auto it = range.begin(); it != range.end(); ++it) {
        const SdfPath path = it->GetPath();
        if (pathsToSkip.count(path)) {
            it.PruneChildren();
            continue;
        }
        if (mixed.count(path)) {
            continue;
        }
        // The nearest override counts: it leads to the space of `prim` on its own.
        auto found = ctmOverrides.end();
        for (SdfPath above = path; above != prim.GetPath() && found == ctmOverrides.end();
             above = above.GetParentPath()) {
            found = ctmOverrides.find(above);
        }
        GfBBox3d bbox;
        if (found != ctmOverrides.end()) {
            bbox = ComputeRelativeBound(*it, prim.GetStage()->GetPrimAtPath(found->first));
            bbox.Transform(found->second);
        } else {
            bbox = ComputeRelativeBound(*it, prim);
            if (primOverride) {
                bbox.Transform(*primOverride);
            }
        }
        result = GfBBox3d::Combine(result, bbox);
        it.PruneChildren();
    }
    return result;
}

// ---- Point instances ----

bool UsdGeomBBoxCache::_ComputePointInstanceBounds(const UsdGeomPointInstancer& instancer,
                                                   const int64_t* instanceIdBegin, size_t numIds,
                                                   const GfMatrix4d& xform, GfBBox3d* result)
{
    const char* const path = instancer.GetPath().GetText();
    VtIntArray protoIndices;
    SdfPathVector protoPaths;
    instancer.GetPrototypesRel().GetTargets(&protoPaths);
    if (!instancer.GetProtoIndicesAttr().Get(&protoIndices, _time) || protoPaths.empty()) {
        TF_WARN("<%s> has no instances with bounds: prototypes or protoIndices are missing.", path);
        return false;
    }
    // The mask is not applied, so that an index still finds its instance.
    VtArray<GfMatrix4d> transforms;
    if (!instancer.ComputeInstanceTransformsAtTime(&transforms, _time, GetBaseTime(),
                                                   UsdGeomPointInstancer::IncludeProtoXform,
                                                   UsdGeomPointInstancer::IgnoreMask)) {
        TF_WARN("The instances of <%s> cannot be placed.", path);
        return false;
    }
    const VtIntArray& indices = protoIndices;
    const VtArray<GfMatrix4d>& matrices = transforms;
    for (size_t i = 0; i < numIds; ++i) {
        const int64_t id = instanceIdBegin[i];
        const bool isKnown = id >= 0 && size_t(id) < indices.size() && size_t(id) < matrices.size();
        const int proto = isKnown ? indices[size_t(id)] : -1;
        if (proto < 0 || size_t(proto) >= protoPaths.size()) {
            TF_WARN("<%s> has no instance %lld with a prototype.", path, static_cast<long long>(id));
            return false;
        }
        result[i] = GfBBox3d();
        if (const UsdPrim protoPrim =
                instancer.GetPrim().GetStage()->GetPrimAtPath(protoPaths[size_t(proto)])) {
            result[i] = ComputeUntransformedBound(protoPrim);
            result[i].Transform(matrices[size_t(id)] * xform);
        }
    }
    return true;
}

bool UsdGeomBBoxCache::ComputePointInstanceWorldBounds(const UsdGeomPointInstancer& instancer,
                                                       const int64_t* instanceIdBegin, size_t numIds,
                                                       GfBBox3d* result)
{
    return _ComputePointInstanceBounds(instancer, instanceIdBegin, numIds,
                                       _ctmCache.GetLocalToWorldTransform(instancer.GetPrim()), result);
}

bool UsdGeomBBoxCache::ComputePointInstanceRelativeBounds(const UsdGeomPointInstancer& instancer,
                                                          const int64_t* instanceIdBegin, size_t numIds,
                                                          const UsdPrim& relativeToAncestorPrim,
                                                          GfBBox3d* result)
{
    const GfMatrix4d ancestor = _ctmCache.GetLocalToWorldTransform(relativeToAncestorPrim);
    // The order of the factors is OpenUSD's.
    return _ComputePointInstanceBounds(
        instancer, instanceIdBegin, numIds,
        ancestor.GetInverse() * _ctmCache.GetLocalToWorldTransform(instancer.GetPrim()), result);
}

bool UsdGeomBBoxCache::ComputePointInstanceLocalBounds(const UsdGeomPointInstancer& instancer,
                                                       const int64_t* instanceIdBegin, size_t numIds,
                                                       GfBBox3d* result)
{
    bool resets = false;
    return _ComputePointInstanceBounds(instancer, instanceIdBegin, numIds,
                                       _ctmCache.GetLocalTransformation(instancer.GetPrim(), &resets),
                                       result);
}

bool UsdGeomBBoxCache::ComputePointInstanceUntransformedBounds(const UsdGeomPointInstancer& instancer,
                                                               const int64_t* instanceIdBegin, size_t numIds,
                                                               GfBBox3d* result)
{
    return _ComputePointInstanceBounds(instancer, instanceIdBegin, numIds, GfMatrix4d(1.0), result);
}

GfBBox3d UsdGeomBBoxCache::ComputePointInstanceWorldBound(const UsdGeomPointInstancer& instancer,
                                                          int64_t instanceId)
{
    GfBBox3d bbox;
    ComputePointInstanceWorldBounds(instancer, &instanceId, 1, &bbox);
    return bbox;
}

GfBBox3d UsdGeomBBoxCache::ComputePointInstanceRelativeBound(const UsdGeomPointInstancer& instancer,
                                                             int64_t instanceId,
                                                             const UsdPrim& relativeToAncestorPrim)
{
    GfBBox3d bbox;
    ComputePointInstanceRelativeBounds(instancer, &instanceId, 1, relativeToAncestorPrim, &bbox);
    return bbox;
}

GfBBox3d UsdGeomBBoxCache::ComputePointInstanceLocalBound(const UsdGeomPointInstancer& instancer,
                                                          int64_t instanceId)
{
    GfBBox3d bbox;
    ComputePointInstanceLocalBounds(instancer, &instanceId, 1, &bbox);
    return bbox;
}

GfBBox3d UsdGeomBBoxCache::ComputePointInstanceUntransformedBound(const UsdGeomPointInstancer& instancer,
                                                                  int64_t instanceId)
{
    GfBBox3d bbox;
    ComputePointInstanceUntransformedBounds(instancer, &instanceId, 1, &bbox);
    return bbox;
}

PXR_NAMESPACE_CLOSE_SCOPE
