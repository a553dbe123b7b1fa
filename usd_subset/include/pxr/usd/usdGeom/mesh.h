#pragma once

#include <pxr/usd/usdGeom/pointBased.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Polygons, or the control cage of a subdivision surface.
class VESK_USD_API UsdGeomMesh : public UsdGeomPointBased
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomMesh, UsdGeomPointBased)

    VESK_USD_SCHEMA_ATTR(FaceVertexIndices, UsdGeomTokens->faceVertexIndices)
    VESK_USD_SCHEMA_ATTR(FaceVertexCounts, UsdGeomTokens->faceVertexCounts)
    VESK_USD_SCHEMA_ATTR(SubdivisionScheme, UsdGeomTokens->subdivisionScheme)
    VESK_USD_SCHEMA_ATTR(InterpolateBoundary, UsdGeomTokens->interpolateBoundary)
    VESK_USD_SCHEMA_ATTR(FaceVaryingLinearInterpolation, UsdGeomTokens->faceVaryingLinearInterpolation)
    VESK_USD_SCHEMA_ATTR(TriangleSubdivisionRule, UsdGeomTokens->triangleSubdivisionRule)
    VESK_USD_SCHEMA_ATTR(HoleIndices, UsdGeomTokens->holeIndices)
    VESK_USD_SCHEMA_ATTR(CornerIndices, UsdGeomTokens->cornerIndices)
    VESK_USD_SCHEMA_ATTR(CornerSharpnesses, UsdGeomTokens->cornerSharpnesses)
    VESK_USD_SCHEMA_ATTR(CreaseIndices, UsdGeomTokens->creaseIndices)
    VESK_USD_SCHEMA_ATTR(CreaseLengths, UsdGeomTokens->creaseLengths)
    VESK_USD_SCHEMA_ATTR(CreaseSharpnesses, UsdGeomTokens->creaseSharpnesses)

    /// A sharpness from here on makes an edge or corner wholly sharp.
    static const float SHARPNESS_INFINITE;
    static bool IsSharpnessInfinite(float sharpness);

    /// Whether the counts add up to the number of indices and each index names a point; else a reason.
    static bool ValidateTopology(const VtIntArray& faceVertexIndices, const VtIntArray& faceVertexCounts,
                                 size_t numPoints, std::string* reason = nullptr);
    size_t GetFaceCount(UsdTimeCode timeCode = UsdTimeCode::Default()) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
