#pragma once

#include <pxr/usd/usdGeom/pointBased.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Points drawn as discs or spheres.
class VESK_USD_API UsdGeomPoints : public UsdGeomPointBased
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomPoints, UsdGeomPointBased)

    VESK_USD_SCHEMA_ATTR(Widths, UsdGeomTokens->widths)
    VESK_USD_SCHEMA_ATTR(Ids, UsdGeomTokens->ids)

    /// How widths are given; vertex where nothing is authored.
    TfToken GetWidthsInterpolation() const;
    bool SetWidthsInterpolation(const TfToken& interpolation);

    static bool ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths, VtVec3fArray* extent);
    static bool ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths,
                              const GfMatrix4d& transform, VtVec3fArray* extent);
    size_t GetPointCount(UsdTimeCode timeCode = UsdTimeCode::Default()) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
