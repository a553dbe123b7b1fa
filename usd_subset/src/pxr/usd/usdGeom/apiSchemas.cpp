#include "pxr/usd/usdGeom/extents.h"

#include <pxr/base/gf/range3f.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/modelAPI.h>
#include <pxr/usd/usdGeom/motionAPI.h>
#include <pxr/usd/usdGeom/visibilityAPI.h>

PXR_NAMESPACE_OPEN_SCOPE

// ---- UsdGeomModelAPI ----

UsdAttribute UsdGeomModelAPI::GetExtentsHintAttr() const
{
    return GetPrim().GetAttribute(UsdGeomTokens->extentsHint);
}

bool UsdGeomModelAPI::GetExtentsHint(VtVec3fArray* extents, const UsdTimeCode& time) const
{
    const UsdAttribute attribute = GetExtentsHintAttr();
    return attribute && attribute.Get(extents, time);
}

bool UsdGeomModelAPI::SetExtentsHint(const VtVec3fArray& extents, const UsdTimeCode& time) const
{
    const size_t most = 2 * UsdGeomImageable::GetOrderedPurposeTokens().size();
    if (extents.size() % 2 != 0 || extents.size() < 2 || extents.size() > most) {
        TF_CODING_ERROR(
            "An extents hint for <%s> needs two corners for each purpose, at most %zu; it has %zu.",
            GetPath().GetText(), most, extents.size());
        return false;
    }
    const UsdAttribute attribute = GetPrim().CreateAttribute(
        UsdGeomTokens->extentsHint, SdfValueTypeNames->Float3Array, /*custom=*/false);
    return attribute && attribute.Set(extents, time);
}

VtVec3fArray UsdGeomModelAPI::ComputeExtentsHint(UsdGeomBBoxCache& bboxCache) const
{
    const TfTokenVector& purposes = UsdGeomImageable::GetOrderedPurposeTokens();
    VtVec3fArray extents;
    if (const UsdGeomBoundable boundable{GetPrim()}) {
        if (!UsdGeomBoundable::ComputeExtentFromPlugins(boundable, bboxCache.GetTime(), &extents)) {
            UsdGeom_SetExtent(GfRange3f().GetMin(), GfRange3f().GetMax(), &extents);
            return extents;
        }
        for (size_t i = 1; i < purposes.size(); ++i) {
            const GfVec3f min = extents[0], max = extents[1];
            extents.push_back(min);
            extents.push_back(max);
        }
        return extents;
    }
    size_t used = 1;
    for (size_t i = 0; i < purposes.size(); ++i) {
        bboxCache.SetIncludedPurposes({purposes[i]});
        const GfRange3d range = bboxCache.ComputeUntransformedBound(GetPrim()).ComputeAlignedRange();
        extents.push_back(GfVec3f(range.GetMin()));
        extents.push_back(GfVec3f(range.GetMax()));
        used = range.IsEmpty() ? used : i + 1;
    }
    extents.resize(2 * used);
    return extents;
}

namespace {

/// A model's own draw mode where it is not "inherited".
bool _GetOwnDrawMode(const UsdPrim& prim, TfToken* drawMode)
{
    if (!prim.IsModel() || !prim.GetParent()) {
        return false;
    }
    const UsdAttribute attribute = UsdGeomModelAPI(prim).GetModelDrawModeAttr();
    return attribute && attribute.Get(drawMode) && *drawMode != UsdGeomTokens->inherited;
}

} // namespace

TfToken UsdGeomModelAPI::ComputeModelDrawMode(const TfToken& parentDrawMode) const
{
    TfToken drawMode;
    if (_GetOwnDrawMode(GetPrim(), &drawMode)) {
        return drawMode;
    }
    if (!parentDrawMode.IsEmpty()) {
        return parentDrawMode;
    }
    for (UsdPrim prim = GetPrim().GetParent(); prim; prim = prim.GetParent()) {
        if (_GetOwnDrawMode(prim, &drawMode)) {
            return drawMode;
        }
    }
    return UsdGeomTokens->default_;
}

// ---- UsdGeomMotionAPI ----

namespace {

/// The nearest value on a prim that the schema is applied to, here or above.
template <class T>
T _ComputeInherited(const UsdPrim& start, const TfToken& name, T fallback, UsdTimeCode time)
{
    for (UsdPrim prim = start; prim && !prim.IsPseudoRoot(); prim = prim.GetParent()) {
        if (!prim.HasAPI<UsdGeomMotionAPI>()) {
            continue;
        }
        const UsdAttribute attribute = prim.GetAttribute(name);
        T value;
        if (attribute.HasAuthoredValue() && attribute.Get(&value, time)) {
            return value;
        }
    }
    return fallback;
}

} // namespace

float UsdGeomMotionAPI::ComputeVelocityScale(UsdTimeCode time) const
{
    return _ComputeInherited(GetPrim(), UsdGeomTokens->motionVelocityScale, 1.0f, time);
}

int UsdGeomMotionAPI::ComputeNonlinearSampleCount(UsdTimeCode time) const
{
    return _ComputeInherited(GetPrim(), UsdGeomTokens->motionNonlinearSampleCount, 3, time);
}

float UsdGeomMotionAPI::ComputeMotionBlurScale(UsdTimeCode time) const
{
    return _ComputeInherited(GetPrim(), UsdGeomTokens->motionBlurScale, 1.0f, time);
}

// ---- UsdGeomVisibilityAPI ----

UsdAttribute UsdGeomVisibilityAPI::GetPurposeVisibilityAttr(const TfToken& purpose) const
{
    if (purpose == UsdGeomTokens->guide) {
        return GetGuideVisibilityAttr();
    }
    if (purpose == UsdGeomTokens->proxy) {
        return GetProxyVisibilityAttr();
    }
    if (purpose == UsdGeomTokens->render) {
        return GetRenderVisibilityAttr();
    }
    TF_CODING_ERROR("<%s> has no visibility for the purpose '%s'.", GetPath().GetText(), purpose.GetText());
    return UsdAttribute();
}

PXR_NAMESPACE_CLOSE_SCOPE
