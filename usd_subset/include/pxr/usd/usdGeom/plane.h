#pragma once

#include <pxr/usd/usdGeom/gprim.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A rectangle across an axis.
class VESK_USD_API UsdGeomPlane : public UsdGeomGprim
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomPlane, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(DoubleSided, UsdGeomTokens->doubleSided)
    VESK_USD_SCHEMA_ATTR(Width, UsdGeomTokens->width)
    VESK_USD_SCHEMA_ATTR(Length, UsdGeomTokens->length)
    VESK_USD_SCHEMA_ATTR(Axis, UsdGeomTokens->axis)
    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    static bool ComputeExtent(double width, double length, const TfToken& axis, VtVec3fArray* extent);
    static bool ComputeExtent(double width, double length, const TfToken& axis, const GfMatrix4d& transform,
                              VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
