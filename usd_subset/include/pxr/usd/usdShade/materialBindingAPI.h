#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usd/collectionAPI.h>
#include <pxr/usd/usd/tokens.h>
#include <pxr/usd/usd/variantSets.h>
#include <pxr/usd/usdGeom/subset.h>
#include <pxr/usd/usdShade/material.h>
#include <pxr/usd/usdShade/tokens.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Which material a prim and those below it have, for all purposes or for one.
class VESK_USD_API UsdShadeMaterialBindingAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdShadeMaterialBindingAPI, UsdAPISchemaBase)

    /// A material that a prim's relationship names.
    class VESK_USD_API DirectBinding
    {
    public:
        DirectBinding() = default;
        explicit DirectBinding(const UsdRelationship& bindingRel);

        UsdShadeMaterial GetMaterial() const;
        const SdfPath& GetMaterialPath() const { return _materialPath; }
        const UsdRelationship& GetBindingRel() const { return _bindingRel; }
        const TfToken& GetMaterialPurpose() const { return _materialPurpose; }
        bool IsBound() const { return !_materialPath.IsEmpty(); }

    private:
        SdfPath _materialPath;
        UsdRelationship _bindingRel;
        TfToken _materialPurpose;
    };

    UsdRelationship GetDirectBindingRel(const TfToken& materialPurpose = UsdShadeTokens->allPurpose) const;
    DirectBinding GetDirectBinding(const TfToken& materialPurpose = UsdShadeTokens->allPurpose) const;
    /// weakerThanDescendants or strongerThanDescendants; the former where nothing is authored.
    static TfToken GetMaterialBindingStrength(const UsdRelationship& bindingRel);
    static bool SetMaterialBindingStrength(const UsdRelationship& bindingRel, const TfToken& bindingStrength);

    bool Bind(const UsdShadeMaterial& material,
              const TfToken& bindingStrength = UsdShadeTokens->fallbackStrength,
              const TfToken& materialPurpose = UsdShadeTokens->allPurpose) const;
    bool UnbindDirectBinding(const TfToken& materialPurpose = UsdShadeTokens->allPurpose) const;
    bool UnbindAllBindings() const;

    /// The material by direct bindings of the prim and its ancestors: the nearest one, or a farther one that
    /// is stronger than its descendants. One for the purpose goes before one for all purposes.
    UsdShadeMaterial ComputeBoundMaterial(const TfToken& materialPurpose = UsdShadeTokens->allPurpose,
                                          UsdRelationship* bindingRel = nullptr) const;

    /// The subsets of the prim's geometry that are there to bind materials to.
    std::vector<UsdGeomSubset> GetMaterialBindSubsets() const;
};

PXR_NAMESPACE_CLOSE_SCOPE
