#include "pxr/usd/usdGeom/extents.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/boundableComputeExtent.h>
#include <pxr/usd/usdGeom/pointInstancer.h>

#include <algorithm>
#include <memory>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr size_t kMaxNesting = 100;

/// What instancers nested in each other share while the extent of the outermost one is computed: one cache,
/// so that a prototype that many refer to is computed once, and the paths on the way down, so that a cycle is
/// noticed.
struct _Nest
{
    UsdTimeCode time;
    UsdStageWeakPtr stage;
    UsdGeomBBoxCache cache;
    std::vector<SdfPath> open;

    _Nest(const UsdStageWeakPtr& stage_, UsdTimeCode time_)
        : time(time_),
          stage(stage_),
          cache(time_, {UsdGeomTokens->default_, UsdGeomTokens->proxy, UsdGeomTokens->render})
    {}
};

thread_local _Nest* t_nest = nullptr;

/// Enters an instancer, in the nest that the thread has for the same stage and time or in a new one.
class _Entrance
{
public:
    _Entrance(const UsdPrim& prim, UsdTimeCode time) : _outer(t_nest), _path(prim.GetPath())
    {
        const UsdStageWeakPtr stage = prim.GetStage();
        if (!t_nest || t_nest->time != time || t_nest->stage != stage) {
            _own = std::make_unique<_Nest>(stage, time);
            if (t_nest) {
                _own->open = t_nest->open;
            }
            t_nest = _own.get();
        }
        const std::vector<SdfPath>& open = t_nest->open;
        _isAllowed = open.size() < kMaxNesting && std::find(open.begin(), open.end(), _path) == open.end();
        t_nest->open.push_back(_path);
    }
    ~_Entrance()
    {
        t_nest->open.pop_back();
        t_nest = _outer;
    }
    _Entrance(const _Entrance&) = delete;
    _Entrance& operator=(const _Entrance&) = delete;

    bool IsAllowed() const { return _isAllowed; }
    UsdGeomBBoxCache& GetCache() { return t_nest->cache; }

private:
    _Nest* _outer;
    SdfPath _path;
    std::unique_ptr<_Nest> _own;
    bool _isAllowed = false;
};

bool _ComputeInstancer(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                       const GfMatrix4d* transform, VtVec3fArray* extent)
{
    const UsdGeomPointInstancer instancer(boundable);
    return transform ? instancer.ComputeExtentAtTime(extent, time, time, *transform)
                     : instancer.ComputeExtentAtTime(extent, time, time);
}

} // namespace

TF_REGISTRY_FUNCTION(UsdGeomBoundable)
{
    UsdGeomRegisterComputeExtentFunction<UsdGeomPointInstancer>(_ComputeInstancer);
}

bool UsdGeomPointInstancer::_ComputeExtent(VtVec3fArray* extent, UsdTimeCode time, UsdTimeCode baseTime,
                                           const GfMatrix4d* transform) const
{
    const UsdPrim prim = GetPrim();
    if (!extent) {
        TF_CODING_ERROR("There is no array for the extent of <%s>.", GetPath().GetText());
        return false;
    }
    VtIntArray indices;
    SdfPathVector protoPaths;
    GetPrototypesRel().GetTargets(&protoPaths);
    if (!GetProtoIndicesAttr().Get(&indices, baseTime) || protoPaths.empty()) {
        TF_WARN("<%s> has no extent: prototypes or protoIndices are missing.", GetPath().GetText());
        return false;
    }
    const std::vector<bool> mask = ComputeMaskAtTime(baseTime);
    VtArray<GfMatrix4d> matrices;
    if ((!mask.empty() && mask.size() != indices.size()) ||
        !ComputeInstanceTransformsAtTime(&matrices, time, baseTime, IncludeProtoXform, IgnoreMask)) {
        TF_WARN("<%s> has no extent: its instances cannot be placed.", GetPath().GetText());
        return false;
    }
    _Entrance entrance(prim, time);
    if (!entrance.IsAllowed()) {
        TF_WARN("<%s> has no extent: it is nested in itself, or more than %zu instancers deep.",
                GetPath().GetText(), kMaxNesting);
        return false;
    }
    std::vector<GfBBox3d> protoBounds(protoPaths.size());
    for (size_t i = 0; i < protoPaths.size(); ++i) {
        if (const UsdPrim proto = prim.GetStage()->GetPrimAtPath(protoPaths[i])) {
            protoBounds[i] = entrance.GetCache().ComputeUntransformedBound(proto);
        }
    }
    GfRange3d range;
    const size_t count = std::min(indices.size(), matrices.size());
    for (size_t i = 0; i < count; ++i) {
        const int proto = std::as_const(indices)[i];
        const bool isKnown = proto >= 0 && size_t(proto) < protoBounds.size();
        if (!isKnown || (!mask.empty() && !mask[i])) {
            continue;
        }
        GfBBox3d bbox = protoBounds[size_t(proto)];
        bbox.Transform(std::as_const(matrices)[i]);
        if (transform) {
            bbox.Transform(*transform);
        }
        range.UnionWith(bbox.ComputeAlignedRange());
    }
    UsdGeom_SetExtent(GfVec3f(range.GetMin()), GfVec3f(range.GetMax()), extent);
    return true;
}

bool UsdGeomPointInstancer::ComputeExtentAtTime(VtVec3fArray* extent, UsdTimeCode time,
                                                UsdTimeCode baseTime) const
{
    return _ComputeExtent(extent, time, baseTime, nullptr);
}

bool UsdGeomPointInstancer::ComputeExtentAtTime(VtVec3fArray* extent, UsdTimeCode time, UsdTimeCode baseTime,
                                                const GfMatrix4d& transform) const
{
    return _ComputeExtent(extent, time, baseTime, &transform);
}

bool UsdGeomPointInstancer::_ComputeExtents(std::vector<VtVec3fArray>* extents,
                                            const std::vector<UsdTimeCode>& times, UsdTimeCode baseTime,
                                            const GfMatrix4d* transform) const
{
    std::vector<VtVec3fArray> result(times.size());
    for (size_t i = 0; i < times.size(); ++i) {
        if (!_ComputeExtent(&result[i], times[i], baseTime, transform)) {
            return false;
        }
    }
    *extents = std::move(result);
    return true;
}

bool UsdGeomPointInstancer::ComputeExtentAtTimes(std::vector<VtVec3fArray>* extents,
                                                 const std::vector<UsdTimeCode>& times,
                                                 UsdTimeCode baseTime) const
{
    return _ComputeExtents(extents, times, baseTime, nullptr);
}

bool UsdGeomPointInstancer::ComputeExtentAtTimes(std::vector<VtVec3fArray>* extents,
                                                 const std::vector<UsdTimeCode>& times, UsdTimeCode baseTime,
                                                 const GfMatrix4d& transform) const
{
    return _ComputeExtents(extents, times, baseTime, &transform);
}

PXR_NAMESPACE_CLOSE_SCOPE
