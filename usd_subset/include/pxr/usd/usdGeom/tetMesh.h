#pragma once

#include <pxr/usd/usdGeom/pointBased.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Tetrahedra.
class VESK_USD_API UsdGeomTetMesh : public UsdGeomPointBased
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomTetMesh, UsdGeomPointBased)

    VESK_USD_SCHEMA_ATTR(TetVertexIndices, UsdGeomTokens->tetVertexIndices)
    VESK_USD_SCHEMA_ATTR(SurfaceFaceVertexIndices, UsdGeomTokens->surfaceFaceVertexIndices)
};

PXR_NAMESPACE_CLOSE_SCOPE
