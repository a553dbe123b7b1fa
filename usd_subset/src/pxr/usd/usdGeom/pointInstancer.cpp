#include <pxr/usd/usdGeom/pointInstancer.h>

#include <pxr/base/gf/quatf.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/usd/editTarget.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

size_t UsdGeomPointInstancer::GetInstanceCount(UsdTimeCode timeCode) const
{
    VtIntArray indices;
    GetProtoIndicesAttr().Get(&indices, timeCode);
    return indices.size();
}

bool UsdGeomPointInstancer::UsesOrientationsf(UsdAttribute* rotationsAttr) const
{
    VtArray<GfQuatf> orientations;
    *rotationsAttr = GetOrientationsfAttr();
    rotationsAttr->Get(&orientations, UsdTimeCode::EarliestTime());
    if (orientations.empty()) {
        *rotationsAttr = GetOrientationsAttr();
    }
    return !orientations.empty();
}

bool UsdGeomPointInstancer::UsesOrientationsf(TfToken* rotationsToken) const
{
    UsdAttribute attribute;
    const bool uses = UsesOrientationsf(&attribute);
    if (rotationsToken) {
        *rotationsToken = uses ? UsdGeomTokens->orientationsf : UsdGeomTokens->orientations;
    }
    return uses;
}

// ---- Inactive ids: a list edit in the prim's metadata ----

namespace {

/// Applies an edit on top of the one that the edit target holds already.
bool _EditInactiveIds(const UsdPrim& prim, const std::vector<int64_t>& ids, SdfListOpType type)
{
    SdfInt64ListOp current;
    const UsdEditTarget target = prim.GetStage()->GetEditTarget();
    if (const SdfPrimSpecHandle spec = target.GetPrimSpecForScenePath(prim.GetPath())) {
        const VtValue existing = spec->GetInfo(UsdGeomTokens->inactiveIds);
        if (existing.IsHolding<SdfInt64ListOp>()) {
            current = existing.UncheckedGet<SdfInt64ListOp>();
        }
    }
    if (!current.IsExplicit()) {
        std::vector<int64_t> items;
        current.ApplyOperations(&items);
        std::sort(items.begin(), items.end());
        SdfInt64ListOp plain;
        plain.SetPrependedItems(items);
        plain.SetDeletedItems(current.GetDeletedItems());
        current = plain;
    }
    SdfInt64ListOp edit;
    edit.SetItems(ids, type);
    const auto combined = edit.ApplyOperations(current);
    return combined && prim.SetMetadata(UsdGeomTokens->inactiveIds, *combined);
}

} // namespace

bool UsdGeomPointInstancer::ActivateId(int64_t id) const
{
    return _EditInactiveIds(GetPrim(), {id}, SdfListOpTypeDeleted);
}

bool UsdGeomPointInstancer::ActivateIds(const VtInt64Array& ids) const
{
    return _EditInactiveIds(GetPrim(), {ids.cbegin(), ids.cend()}, SdfListOpTypeDeleted);
}

bool UsdGeomPointInstancer::ActivateAllIds() const
{
    SdfInt64ListOp none;
    none.SetExplicitItems({});
    return GetPrim().SetMetadata(UsdGeomTokens->inactiveIds, none);
}

bool UsdGeomPointInstancer::DeactivateId(int64_t id) const
{
    return _EditInactiveIds(GetPrim(), {id}, SdfListOpTypeAppended);
}

bool UsdGeomPointInstancer::DeactivateIds(const VtInt64Array& ids) const
{
    return _EditInactiveIds(GetPrim(), {ids.cbegin(), ids.cend()}, SdfListOpTypeAppended);
}

// ---- Invisible ids: an attribute ----

bool UsdGeomPointInstancer::VisId(int64_t id, const UsdTimeCode& time) const { return VisIds({id}, time); }

bool UsdGeomPointInstancer::VisIds(const VtInt64Array& ids, const UsdTimeCode& time) const
{
    VtInt64Array invisible;
    if (!GetInvisibleIdsAttr().Get(&invisible, time)) {
        return true;
    }
    std::set<int64_t> remaining(invisible.cbegin(), invisible.cend());
    size_t removed = 0;
    for (const int64_t id : ids) {
        removed += remaining.erase(id);
    }
    if (removed > 0) {
        invisible.assign(remaining.begin(), remaining.end());
    }
    return CreateInvisibleIdsAttr().Set(invisible, time);
}

bool UsdGeomPointInstancer::VisAllIds(const UsdTimeCode& time) const
{
    return !GetInvisibleIdsAttr().HasAuthoredValue() || CreateInvisibleIdsAttr().Set(VtInt64Array(), time);
}

bool UsdGeomPointInstancer::InvisId(int64_t id, const UsdTimeCode& time) const
{
    return InvisIds({id}, time);
}

bool UsdGeomPointInstancer::InvisIds(const VtInt64Array& ids, const UsdTimeCode& time) const
{
    VtInt64Array invisible;
    if (!GetInvisibleIdsAttr().Get(&invisible, time)) {
        return true;
    }
    const std::set<int64_t> known(invisible.cbegin(), invisible.cend());
    for (const int64_t id : ids) {
        if (known.count(id) == 0) {
            invisible.push_back(id);
        }
    }
    return CreateInvisibleIdsAttr().Set(invisible, time);
}

std::vector<bool> UsdGeomPointInstancer::ComputeMaskAtTime(UsdTimeCode time, const VtInt64Array* ids) const
{
    SdfInt64ListOp inactive;
    GetPrim().GetMetadata(UsdGeomTokens->inactiveIds, &inactive);
    VtInt64Array invisible;
    GetInvisibleIdsAttr().Get(&invisible, time);
    std::set<int64_t> hidden(invisible.cbegin(), invisible.cend());
    hidden.insert(inactive.GetExplicitItems().begin(), inactive.GetExplicitItems().end());
    if (hidden.empty()) {
        return {};
    }
    VtInt64Array own;
    if (!ids && !GetIdsAttr().Get(&own, time)) {
        // Without ids an instance is called by its index.
        for (size_t i = 0, count = GetInstanceCount(time); i < count; ++i) {
            own.push_back(int64_t(i));
        }
    }
    const VtInt64Array& names = ids ? *ids : own;
    std::vector<bool> mask;
    mask.reserve(names.size());
    for (const int64_t id : names) {
        mask.push_back(hidden.count(id) == 0);
    }
    return std::find(mask.begin(), mask.end(), false) == mask.end() ? std::vector<bool>() : mask;
}

PXR_NAMESPACE_CLOSE_SCOPE
