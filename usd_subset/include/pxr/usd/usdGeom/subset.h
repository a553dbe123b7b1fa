#pragma once

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/typed.h>
#include <pxr/usd/usdGeom/basisCurves.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/mesh.h>
#include <pxr/usd/usdGeom/tetMesh.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Some of the faces, points, edges, segments or tetrahedra of the geometry that is its parent.
class VESK_USD_API UsdGeomSubset : public UsdTyped
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomSubset, UsdTyped)

    VESK_USD_SCHEMA_ATTR(ElementType, UsdGeomTokens->elementType)
    VESK_USD_SCHEMA_ATTR(Indices, UsdGeomTokens->indices)
    VESK_USD_SCHEMA_ATTR(FamilyName, UsdGeomTokens->familyName)

    /// Finds or defines the subset of that name below `geom`.
    static UsdGeomSubset CreateGeomSubset(const UsdGeomImageable& geom, const TfToken& subsetName,
                                          const TfToken& elementType, const VtIntArray& indices,
                                          const TfToken& familyName = TfToken(),
                                          const TfToken& familyType = TfToken());
    /// The same under a name that is not taken yet.
    static UsdGeomSubset CreateUniqueGeomSubset(const UsdGeomImageable& geom, const TfToken& subsetName,
                                                const TfToken& elementType, const VtIntArray& indices,
                                                const TfToken& familyName = TfToken(),
                                                const TfToken& familyType = TfToken());
    static std::vector<UsdGeomSubset> GetAllGeomSubsets(const UsdGeomImageable& geom);
    /// Those of an element type and family; an empty token takes all.
    static std::vector<UsdGeomSubset> GetGeomSubsets(const UsdGeomImageable& geom,
                                                     const TfToken& elementType = TfToken(),
                                                     const TfToken& familyName = TfToken());
    static TfToken::Set GetAllGeomSubsetFamilyNames(const UsdGeomImageable& geom);
    static bool SetFamilyType(const UsdGeomImageable& geom, const TfToken& familyName,
                              const TfToken& familyType);
    /// partition, nonOverlapping or unrestricted, which is the fallback.
    static TfToken GetFamilyType(const UsdGeomImageable& geom, const TfToken& familyName);
    /// The elements below `elementCount` that no subset holds.
    static VtIntArray GetUnassignedIndices(const std::vector<UsdGeomSubset>& subsets, size_t elementCount,
                                           const UsdTimeCode& time = UsdTimeCode::EarliestTime());
};

PXR_NAMESPACE_CLOSE_SCOPE
