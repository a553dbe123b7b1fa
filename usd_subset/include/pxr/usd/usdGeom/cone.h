#pragma once

#include <pxr/usd/usdGeom/gprim.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A cone along an axis, its middle at the origin.
class VESK_USD_API UsdGeomCone : public UsdGeomGprim
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomCone, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(Height, UsdGeomTokens->height)
    VESK_USD_SCHEMA_ATTR(Radius, UsdGeomTokens->radius)
    VESK_USD_SCHEMA_ATTR(Axis, UsdGeomTokens->axis)
    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    static bool ComputeExtent(double height, double radius, const TfToken& axis, VtVec3fArray* extent);
    static bool ComputeExtent(double height, double radius, const TfToken& axis, const GfMatrix4d& transform,
                              VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
