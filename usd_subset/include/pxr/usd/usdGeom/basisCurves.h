#pragma once

#include <pxr/usd/usdGeom/curves.h>

#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Linear or cubic curves of one basis.
class VESK_USD_API UsdGeomBasisCurves : public UsdGeomCurves
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomBasisCurves, UsdGeomCurves)

    VESK_USD_SCHEMA_ATTR(Type, UsdGeomTokens->type)
    VESK_USD_SCHEMA_ATTR(Basis, UsdGeomTokens->basis)
    VESK_USD_SCHEMA_ATTR(Wrap, UsdGeomTokens->wrap)

    typedef std::vector<std::pair<TfToken, size_t>> ComputeInterpolationInfo;
    /// The interpolation that fits `n` values; empty where none does. `info` gets what was expected.
    TfToken ComputeInterpolationForSize(size_t n, const UsdTimeCode& timeCode,
                                        ComputeInterpolationInfo* info = nullptr) const;
    size_t ComputeUniformDataSize(const UsdTimeCode& timeCode) const;
    size_t ComputeVaryingDataSize(const UsdTimeCode& timeCode) const;
    size_t ComputeVertexDataSize(const UsdTimeCode& timeCode) const;
    /// The segments of each curve; -1 for a curve with too few points. Empty where the counts are unknown.
    VtIntArray ComputeSegmentCounts(const UsdTimeCode& timeCode) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
