#pragma once

#include <pxr/usd/usdGeom/curves.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Cubic curves given by points and tangents.
class VESK_USD_API UsdGeomHermiteCurves : public UsdGeomCurves
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomHermiteCurves, UsdGeomCurves)

    VESK_USD_SCHEMA_ATTR(Tangents, UsdGeomTokens->tangents)
};

PXR_NAMESPACE_CLOSE_SCOPE
