#include <pxr/usd/usdGeom/subset.h>

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

TfToken _FamilyTypeName(const TfToken& familyName)
{
    return TfToken("subsetFamily:" + familyName.GetString() + ":familyType");
}

UsdGeomSubset _DefineSubset(const UsdGeomImageable& geom, const SdfPath& path, const TfToken& elementType,
                            const VtIntArray& indices, const TfToken& familyName, const TfToken& familyType)
{
    const UsdGeomSubset subset = UsdGeomSubset::Define(geom.GetPrim().GetStage(), path);
    subset.GetElementTypeAttr().Set(elementType);
    subset.GetIndicesAttr().Set(indices);
    subset.GetFamilyNameAttr().Set(familyName);
    if (!familyName.IsEmpty() && !familyType.IsEmpty()) {
        UsdGeomSubset::SetFamilyType(geom, familyName, familyType);
    }
    return subset;
}

} // namespace

UsdGeomSubset UsdGeomSubset::CreateGeomSubset(const UsdGeomImageable& geom, const TfToken& subsetName,
                                              const TfToken& elementType, const VtIntArray& indices,
                                              const TfToken& familyName, const TfToken& familyType)
{
    return _DefineSubset(geom, geom.GetPath().AppendChild(subsetName), elementType, indices, familyName,
                         familyType);
}

UsdGeomSubset UsdGeomSubset::CreateUniqueGeomSubset(const UsdGeomImageable& geom, const TfToken& subsetName,
                                                    const TfToken& elementType, const VtIntArray& indices,
                                                    const TfToken& familyName, const TfToken& familyType)
{
    SdfPath path = geom.GetPath().AppendChild(subsetName);
    for (size_t i = 1; geom.GetPrim().GetStage()->GetPrimAtPath(path); ++i) {
        path = geom.GetPath().AppendChild(TfToken(TfStringPrintf("%s_%zu", subsetName.GetText(), i)));
    }
    return _DefineSubset(geom, path, elementType, indices, familyName, familyType);
}

std::vector<UsdGeomSubset> UsdGeomSubset::GetAllGeomSubsets(const UsdGeomImageable& geom)
{
    std::vector<UsdGeomSubset> subsets;
    const auto predicate =
        UsdPrimIsActive && UsdPrimHasDefiningSpecifier && UsdPrimIsLoaded && !UsdPrimIsAbstract;
    for (const UsdPrim& child : geom.GetPrim().GetFilteredChildren(predicate)) {
        if (child.IsA<UsdGeomSubset>()) {
            subsets.emplace_back(child);
        }
    }
    return subsets;
}

std::vector<UsdGeomSubset> UsdGeomSubset::GetGeomSubsets(const UsdGeomImageable& geom,
                                                         const TfToken& elementType,
                                                         const TfToken& familyName)
{
    std::vector<UsdGeomSubset> subsets;
    for (const UsdGeomSubset& subset : GetAllGeomSubsets(geom)) {
        TfToken type, family;
        subset.GetElementTypeAttr().Get(&type);
        subset.GetFamilyNameAttr().Get(&family);
        if ((elementType.IsEmpty() || type == elementType) &&
            (familyName.IsEmpty() || family == familyName)) {
            subsets.push_back(subset);
        }
    }
    return subsets;
}

TfToken::Set UsdGeomSubset::GetAllGeomSubsetFamilyNames(const UsdGeomImageable& geom)
{
    TfToken::Set names;
    for (const UsdGeomSubset& subset : GetAllGeomSubsets(geom)) {
        TfToken family;
        subset.GetFamilyNameAttr().Get(&family);
        if (!family.IsEmpty()) {
            names.insert(family);
        }
    }
    return names;
}

bool UsdGeomSubset::SetFamilyType(const UsdGeomImageable& geom, const TfToken& familyName,
                                  const TfToken& familyType)
{
    return geom.GetPrim()
        .CreateAttribute(_FamilyTypeName(familyName), SdfValueTypeNames->Token, /*custom=*/false,
                         SdfVariabilityUniform)
        .Set(familyType);
}

TfToken UsdGeomSubset::GetFamilyType(const UsdGeomImageable& geom, const TfToken& familyName)
{
    TfToken type;
    const UsdAttribute attribute = geom.GetPrim().GetAttribute(_FamilyTypeName(familyName));
    return attribute && attribute.Get(&type) && !type.IsEmpty() ? type : UsdGeomTokens->unrestricted;
}

VtIntArray UsdGeomSubset::GetUnassignedIndices(const std::vector<UsdGeomSubset>& subsets, size_t elementCount,
                                               const UsdTimeCode& time)
{
    std::vector<bool> isAssigned(elementCount, false);
    for (const UsdGeomSubset& subset : subsets) {
        VtIntArray indices;
        subset.GetIndicesAttr().Get(&indices, time);
        for (const int index : indices) {
            if (index >= 0 && size_t(index) < elementCount) {
                isAssigned[size_t(index)] = true;
            }
        }
    }
    VtIntArray unassigned;
    for (size_t i = 0; i < elementCount; ++i) {
        if (!isAssigned[i]) {
            unassigned.push_back(int(i));
        }
    }
    return unassigned;
}

PXR_NAMESPACE_CLOSE_SCOPE
