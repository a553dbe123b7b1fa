#include "pxr/usd/usd/listOpUtils.h"

#include <pxr/usd/sdf/listOp.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class ListOp>
bool compose(const VtValueVector& strongestFirst, VtValue* result)
{
    if (!strongestFirst.front().IsHolding<ListOp>()) {
        return false;
    }
    typename ListOp::ItemVector items;
    for (auto opinion = strongestFirst.rbegin(); opinion != strongestFirst.rend(); ++opinion) {
        if (opinion->IsHolding<ListOp>()) {
            opinion->template UncheckedGet<ListOp>().ApplyOperations(&items);
        }
    }
    ListOp composed;
    composed.SetExplicitItems(items);
    *result = composed;
    return true;
}

} // namespace

bool Usd_IsListOp(const VtValue& value)
{
    return value.IsHolding<SdfTokenListOp>() || value.IsHolding<SdfStringListOp>() ||
           value.IsHolding<SdfIntListOp>() || value.IsHolding<SdfUIntListOp>() ||
           value.IsHolding<SdfInt64ListOp>() || value.IsHolding<SdfUInt64ListOp>();
}

VtValue Usd_ComposeListOps(const VtValueVector& strongestFirst)
{
    VtValue result;
    compose<SdfTokenListOp>(strongestFirst, &result) || compose<SdfStringListOp>(strongestFirst, &result) ||
        compose<SdfIntListOp>(strongestFirst, &result) || compose<SdfUIntListOp>(strongestFirst, &result) ||
        compose<SdfInt64ListOp>(strongestFirst, &result) || compose<SdfUInt64ListOp>(strongestFirst, &result);
    return result;
}

PXR_NAMESPACE_CLOSE_SCOPE
