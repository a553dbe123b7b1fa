#pragma once

#include <pxr/usd/usdGeom/gprim.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A capsule with two radii.
class VESK_USD_API UsdGeomCapsule_1 : public UsdGeomGprim
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomCapsule_1, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(Height, UsdGeomTokens->height)
    VESK_USD_SCHEMA_ATTR(RadiusTop, UsdGeomTokens->radiusTop)
    VESK_USD_SCHEMA_ATTR(RadiusBottom, UsdGeomTokens->radiusBottom)
    VESK_USD_SCHEMA_ATTR(Axis, UsdGeomTokens->axis)
    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    static bool ComputeExtent(double height, double radiusTop, double radiusBottom, const TfToken& axis,
                              VtVec3fArray* extent);
    static bool ComputeExtent(double height, double radiusTop, double radiusBottom, const TfToken& axis,
                              const GfMatrix4d& transform, VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
