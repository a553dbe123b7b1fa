#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Edits the specialized prims of a prim at the stage's edit target.
class VESK_USD_API UsdSpecializes
{
public:
    bool AddSpecialize(const SdfPath& primPath, UsdListPosition position = UsdListPositionBackOfPrependList);
    bool RemoveSpecialize(const SdfPath& item);
    bool ClearSpecializes();
    bool SetSpecializes(const SdfPathVector& items);
    const UsdPrim& GetPrim() const { return _prim; }
    UsdPrim GetPrim() { return _prim; }
    explicit operator bool() { return static_cast<bool>(_prim); }

private:
    friend class UsdPrim;
    explicit UsdSpecializes(const UsdPrim& prim) : _prim(prim) {}

    UsdPrim _prim;
};

PXR_NAMESPACE_CLOSE_SCOPE
