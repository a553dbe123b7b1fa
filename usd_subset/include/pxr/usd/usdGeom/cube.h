#pragma once

#include <pxr/usd/usdGeom/gprim.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A cube about the origin.
class VESK_USD_API UsdGeomCube : public UsdGeomGprim
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomCube, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(Size, UsdGeomTokens->size)
    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    static bool ComputeExtent(double size, VtVec3fArray* extent);
    static bool ComputeExtent(double size, const GfMatrix4d& transform, VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
