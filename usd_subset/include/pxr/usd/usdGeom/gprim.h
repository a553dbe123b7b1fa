#pragma once

#include <pxr/usd/usdGeom/boundable.h>
#include <pxr/usd/usdGeom/primvar.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of geometry that is drawn.
class VESK_USD_API UsdGeomGprim : public UsdGeomBoundable
{
    VESK_USD_ABSTRACT_SCHEMA(UsdGeomGprim, UsdGeomBoundable)

    VESK_USD_SCHEMA_ATTR(DisplayColor, UsdGeomTokens->primvarsDisplayColor)
    VESK_USD_SCHEMA_ATTR(DisplayOpacity, UsdGeomTokens->primvarsDisplayOpacity)
    VESK_USD_SCHEMA_ATTR(DoubleSided, UsdGeomTokens->doubleSided)
    VESK_USD_SCHEMA_ATTR(Orientation, UsdGeomTokens->orientation)

    UsdGeomPrimvar GetDisplayColorPrimvar() const;
    UsdGeomPrimvar CreateDisplayColorPrimvar(const TfToken& interpolation = TfToken(),
                                             int elementSize = -1) const;
    UsdGeomPrimvar GetDisplayOpacityPrimvar() const;
    UsdGeomPrimvar CreateDisplayOpacityPrimvar(const TfToken& interpolation = TfToken(),
                                               int elementSize = -1) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
