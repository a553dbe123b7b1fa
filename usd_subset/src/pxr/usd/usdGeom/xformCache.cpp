#include <pxr/usd/usdGeom/xformCache.h>

#include <pxr/base/tf/diagnostic.h>

#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

UsdGeomXformCache::_Entry* UsdGeomXformCache::_GetEntry(const UsdPrim& prim)
{
    _Entry& entry = _entries.FindOrAdd(prim);
    if (!entry.hasQuery) {
        if (const UsdGeomXformable xformable{prim}) {
            entry.query = UsdGeomXformable::XformQuery(xformable);
        }
        entry.hasQuery = true;
    }
    return &entry;
}

const GfMatrix4d* UsdGeomXformCache::_GetCtm(const UsdPrim& prim)
{
    static const GfMatrix4d identity(1.0);
    // Up to the nearest ancestor whose matrix is known, then down again.
    std::vector<_Entry*> open;
    const GfMatrix4d* above = &identity;
    for (UsdPrim it = prim; it; it = it.GetParent()) {
        _Entry* const entry = _GetEntry(it);
        if (entry->ctmIsValid) {
            above = &entry->ctm;
            break;
        }
        open.push_back(entry);
        if (entry->query.GetResetXformStack()) {
            break;
        }
    }
    while (!open.empty()) {
        _Entry* const entry = open.back();
        open.pop_back();
        GfMatrix4d local(1.0);
        entry->query.GetLocalTransformation(&local, _time);
        entry->ctm = entry->query.GetResetXformStack() ? local : local * *above;
        entry->ctmIsValid = true;
        above = &entry->ctm;
    }
    return above;
}

GfMatrix4d UsdGeomXformCache::GetLocalToWorldTransform(const UsdPrim& prim) { return *_GetCtm(prim); }

GfMatrix4d UsdGeomXformCache::GetParentToWorldTransform(const UsdPrim& prim)
{
    return *_GetCtm(prim.GetParent());
}

GfMatrix4d UsdGeomXformCache::GetLocalTransformation(const UsdPrim& prim, bool* resetsXformStack)
{
    GfMatrix4d local(1.0);
    if (!resetsXformStack) {
        TF_CODING_ERROR("resetsXformStack is null.");
        return local;
    }
    const _Entry* const entry = _GetEntry(prim);
    entry->query.GetLocalTransformation(&local, _time);
    *resetsXformStack = entry->query.GetResetXformStack();
    return local;
}

GfMatrix4d UsdGeomXformCache::ComputeRelativeTransform(const UsdPrim& prim, const UsdPrim& ancestor,
                                                       bool* resetXformStack)
{
    GfMatrix4d relative(1.0);
    if (!resetXformStack) {
        TF_CODING_ERROR("resetXformStack is null.");
        return relative;
    }
    for (UsdPrim it = prim; it && it != ancestor; it = it.GetParent()) {
        relative *= GetLocalTransformation(it, resetXformStack);
        if (*resetXformStack) {
            break;
        }
    }
    return relative;
}

bool UsdGeomXformCache::IsAttributeIncludedInLocalTransform(const UsdPrim& prim, const TfToken& attrName)
{
    return _GetEntry(prim)->query.IsAttributeIncludedInLocalTransform(attrName);
}

bool UsdGeomXformCache::TransformMightBeTimeVarying(const UsdPrim& prim)
{
    return _GetEntry(prim)->query.TransformMightBeTimeVarying();
}

bool UsdGeomXformCache::GetResetXformStack(const UsdPrim& prim)
{
    return _GetEntry(prim)->query.GetResetXformStack();
}

void UsdGeomXformCache::SetTime(UsdTimeCode time)
{
    if (time == _time) {
        return;
    }
    _entries.ForEach([](_Entry& entry) {
        entry.ctmIsValid = false;
        return true;
    });
    _time = time;
}

void UsdGeomXformCache::Swap(UsdGeomXformCache& other)
{
    _entries.Swap(other._entries);
    std::swap(_time, other._time);
}

PXR_NAMESPACE_CLOSE_SCOPE
