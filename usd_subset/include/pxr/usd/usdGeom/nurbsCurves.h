#pragma once

#include <pxr/usd/usdGeom/curves.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Rational B-spline curves.
class VESK_USD_API UsdGeomNurbsCurves : public UsdGeomCurves
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomNurbsCurves, UsdGeomCurves)

    VESK_USD_SCHEMA_ATTR(Order, UsdGeomTokens->order)
    VESK_USD_SCHEMA_ATTR(Knots, UsdGeomTokens->knots)
    VESK_USD_SCHEMA_ATTR(Ranges, UsdGeomTokens->ranges)
    VESK_USD_SCHEMA_ATTR(PointWeights, UsdGeomTokens->pointWeights)
};

PXR_NAMESPACE_CLOSE_SCOPE
