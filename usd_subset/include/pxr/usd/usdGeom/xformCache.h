#pragma once

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/tf/chunkedTable.h>
#include <pxr/base/tf/hash.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>
#include <pxr/usd/usdGeom/xformable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Transforms of many prims at one time. It does not notice edits: clear it after each.
///
/// Thread: one at a time.
class VESK_USD_API UsdGeomXformCache
{
public:
    UsdGeomXformCache() = default;
    explicit UsdGeomXformCache(UsdTimeCode time) : _time(time) {}

    GfMatrix4d GetLocalToWorldTransform(const UsdPrim& prim);
    GfMatrix4d GetParentToWorldTransform(const UsdPrim& prim);
    GfMatrix4d GetLocalTransformation(const UsdPrim& prim, bool* resetsXformStack);
    /// From the prim's space to that of an ancestor; where a prim on the way resets the stack, to the
    /// world's.
    GfMatrix4d ComputeRelativeTransform(const UsdPrim& prim, const UsdPrim& ancestor, bool* resetXformStack);
    bool IsAttributeIncludedInLocalTransform(const UsdPrim& prim, const TfToken& attrName);
    bool TransformMightBeTimeVarying(const UsdPrim& prim);
    bool GetResetXformStack(const UsdPrim& prim);

    void Clear() { _entries.Clear(); }
    /// Moves to a time; what does not vary stays known.
    void SetTime(UsdTimeCode time);
    UsdTimeCode GetTime() const { return _time; }
    void Swap(UsdGeomXformCache& other);

private:
    struct _Entry
    {
        UsdPrim prim;
        UsdGeomXformable::XformQuery query;
        GfMatrix4d ctm{1.0};
        bool hasQuery = false;
        bool ctmIsValid = false;
    };

    _Entry* _GetEntry(const UsdPrim& prim);
    const GfMatrix4d* _GetCtm(const UsdPrim& prim);

    Tf_ChunkedTable<_Entry, &_Entry::prim, TfHash> _entries;
    UsdTimeCode _time = UsdTimeCode::Default();
};

PXR_NAMESPACE_CLOSE_SCOPE
