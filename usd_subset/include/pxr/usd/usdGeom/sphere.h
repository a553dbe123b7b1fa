#pragma once

#include <pxr/usd/usdGeom/gprim.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A sphere about the origin.
class VESK_USD_API UsdGeomSphere : public UsdGeomGprim
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomSphere, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(Radius, UsdGeomTokens->radius)
    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    static bool ComputeExtent(double radius, VtVec3fArray* extent);
    static bool ComputeExtent(double radius, const GfMatrix4d& transform, VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
