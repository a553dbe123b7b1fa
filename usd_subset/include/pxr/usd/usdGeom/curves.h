#pragma once

#include <pxr/usd/usdGeom/pointBased.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of batches of curves.
class VESK_USD_API UsdGeomCurves : public UsdGeomPointBased
{
    VESK_USD_ABSTRACT_SCHEMA(UsdGeomCurves, UsdGeomPointBased)

    VESK_USD_SCHEMA_ATTR(CurveVertexCounts, UsdGeomTokens->curveVertexCounts)
    VESK_USD_SCHEMA_ATTR(Widths, UsdGeomTokens->widths)

    /// How widths are laid along the curves; vertex where nothing is authored.
    TfToken GetWidthsInterpolation() const;
    bool SetWidthsInterpolation(const TfToken& interpolation);

    static bool ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths, VtVec3fArray* extent);
    static bool ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths,
                              const GfMatrix4d& transform, VtVec3fArray* extent);
    size_t GetCurveCount(UsdTimeCode timeCode = UsdTimeCode::Default()) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
