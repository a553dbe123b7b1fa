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

/// Edits the inherited classes of a prim at the stage's edit target.
class VESK_USD_API UsdInherits
{
public:
    bool AddInherit(const SdfPath& primPath, UsdListPosition position = UsdListPositionBackOfPrependList);
    bool RemoveInherit(const SdfPath& item);
    bool ClearInherits();
    bool SetInherits(const SdfPathVector& items);
    /// All paths that the prim inherits from directly, in its layers and through its references.
    SdfPathVector GetAllDirectInherits() const;
    const UsdPrim& GetPrim() const { return _prim; }
    UsdPrim GetPrim() { return _prim; }
    explicit operator bool() { return static_cast<bool>(_prim); }

private:
    friend class UsdPrim;
    explicit UsdInherits(const UsdPrim& prim) : _prim(prim) {}

    UsdPrim _prim;
};

PXR_NAMESPACE_CLOSE_SCOPE
