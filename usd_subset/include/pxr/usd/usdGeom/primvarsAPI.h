#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdGeom/primvar.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The primvars of a prim, its own and those that come down from its ancestors. Constant ones come down.
class VESK_USD_API UsdGeomPrimvarsAPI : public UsdAPISchemaBase
{
    VESK_USD_API_SCHEMA(UsdGeomPrimvarsAPI, UsdAPISchemaBase)

    UsdGeomPrimvar CreatePrimvar(const TfToken& name, const SdfValueTypeName& typeName,
                                 const TfToken& interpolation = TfToken(), int elementSize = -1) const;
    template <typename T>
    UsdGeomPrimvar CreateNonIndexedPrimvar(const TfToken& name, const SdfValueTypeName& typeName,
                                           const T& value, const TfToken& interpolation = TfToken(),
                                           int elementSize = -1,
                                           UsdTimeCode time = UsdTimeCode::Default()) const
    {
        UsdGeomPrimvar primvar = CreatePrimvar(name, typeName, interpolation, elementSize);
        primvar.Set(value, time);
        primvar.BlockIndices();
        return primvar;
    }
    template <typename T>
    UsdGeomPrimvar CreateIndexedPrimvar(const TfToken& name, const SdfValueTypeName& typeName, const T& value,
                                        const VtIntArray& indices, const TfToken& interpolation = TfToken(),
                                        int elementSize = -1, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        UsdGeomPrimvar primvar = CreatePrimvar(name, typeName, interpolation, elementSize);
        primvar.Set(value, time);
        primvar.SetIndices(indices, time);
        return primvar;
    }
    bool RemovePrimvar(const TfToken& name);
    void BlockPrimvar(const TfToken& name);

    UsdGeomPrimvar GetPrimvar(const TfToken& name) const;
    std::vector<UsdGeomPrimvar> GetPrimvars() const;
    std::vector<UsdGeomPrimvar> GetAuthoredPrimvars() const;
    std::vector<UsdGeomPrimvar> GetPrimvarsWithValues() const;
    std::vector<UsdGeomPrimvar> GetPrimvarsWithAuthoredValues() const;

    /// What children of this prim inherit: constant primvars with authored values, here and above.
    std::vector<UsdGeomPrimvar> FindInheritablePrimvars() const;
    /// The same where the parent's answer is known; empty when nothing changes here.
    std::vector<UsdGeomPrimvar>
    FindIncrementallyInheritablePrimvars(const std::vector<UsdGeomPrimvar>& inheritedFromAncestors) const;
    UsdGeomPrimvar FindPrimvarWithInheritance(const TfToken& name) const;
    UsdGeomPrimvar
    FindPrimvarWithInheritance(const TfToken& name,
                               const std::vector<UsdGeomPrimvar>& inheritedFromAncestors) const;
    std::vector<UsdGeomPrimvar> FindPrimvarsWithInheritance() const;
    std::vector<UsdGeomPrimvar>
    FindPrimvarsWithInheritance(const std::vector<UsdGeomPrimvar>& inheritedFromAncestors) const;

    bool HasPrimvar(const TfToken& name) const;
    bool HasPossiblyInheritedPrimvar(const TfToken& name) const;
    static bool CanContainPropertyName(const TfToken& name);
};

PXR_NAMESPACE_CLOSE_SCOPE
