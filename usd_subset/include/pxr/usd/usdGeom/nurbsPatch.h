#pragma once

#include <pxr/usd/usdGeom/pointBased.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A rational B-spline surface, possibly trimmed.
class VESK_USD_API UsdGeomNurbsPatch : public UsdGeomPointBased
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomNurbsPatch, UsdGeomPointBased)

    VESK_USD_SCHEMA_ATTR(UVertexCount, UsdGeomTokens->uVertexCount)
    VESK_USD_SCHEMA_ATTR(VVertexCount, UsdGeomTokens->vVertexCount)
    VESK_USD_SCHEMA_ATTR(UOrder, UsdGeomTokens->uOrder)
    VESK_USD_SCHEMA_ATTR(VOrder, UsdGeomTokens->vOrder)
    VESK_USD_SCHEMA_ATTR(UKnots, UsdGeomTokens->uKnots)
    VESK_USD_SCHEMA_ATTR(VKnots, UsdGeomTokens->vKnots)
    VESK_USD_SCHEMA_ATTR(UForm, UsdGeomTokens->uForm)
    VESK_USD_SCHEMA_ATTR(VForm, UsdGeomTokens->vForm)
    VESK_USD_SCHEMA_ATTR(URange, UsdGeomTokens->uRange)
    VESK_USD_SCHEMA_ATTR(VRange, UsdGeomTokens->vRange)
    VESK_USD_SCHEMA_ATTR(PointWeights, UsdGeomTokens->pointWeights)
    VESK_USD_SCHEMA_ATTR(TrimCurveCounts, UsdGeomTokens->trimCurveCounts)
    VESK_USD_SCHEMA_ATTR(TrimCurveOrders, UsdGeomTokens->trimCurveOrders)
    VESK_USD_SCHEMA_ATTR(TrimCurveVertexCounts, UsdGeomTokens->trimCurveVertexCounts)
    VESK_USD_SCHEMA_ATTR(TrimCurveKnots, UsdGeomTokens->trimCurveKnots)
    VESK_USD_SCHEMA_ATTR(TrimCurveRanges, UsdGeomTokens->trimCurveRanges)
    VESK_USD_SCHEMA_ATTR(TrimCurvePoints, UsdGeomTokens->trimCurvePoints)
};

PXR_NAMESPACE_CLOSE_SCOPE
