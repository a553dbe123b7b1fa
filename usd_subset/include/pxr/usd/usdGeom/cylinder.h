#pragma once

#include <pxr/usd/usdGeom/gprim.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A closed cylinder along an axis.
class VESK_USD_API UsdGeomCylinder : public UsdGeomGprim
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomCylinder, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(Height, UsdGeomTokens->height)
    VESK_USD_SCHEMA_ATTR(Radius, UsdGeomTokens->radius)
    VESK_USD_SCHEMA_ATTR(Axis, UsdGeomTokens->axis)
    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    static bool ComputeExtent(double height, double radius, const TfToken& axis, VtVec3fArray* extent);
    static bool ComputeExtent(double height, double radius, const TfToken& axis, const GfMatrix4d& transform,
                              VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
