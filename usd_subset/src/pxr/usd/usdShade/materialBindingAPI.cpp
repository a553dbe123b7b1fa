#include <pxr/usd/usdShade/materialBindingAPI.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/property.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/imageable.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

TfToken _RelName(const TfToken& purpose)
{
    return purpose.IsEmpty()
               ? UsdShadeTokens->materialBinding
               : TfToken(UsdShadeTokens->materialBinding.GetString() + ":" + purpose.GetString());
}

/// "material:binding" is for all purposes, "material:binding:<purpose>" for one.
TfToken _PurposeOf(const UsdRelationship& rel)
{
    const std::vector<std::string> names = rel.SplitName();
    return names.size() == 3 ? TfToken(names[2]) : UsdShadeTokens->allPurpose;
}

} // namespace

UsdShadeMaterialBindingAPI::DirectBinding::DirectBinding(const UsdRelationship& bindingRel)
    : _bindingRel(bindingRel)
{
    SdfPathVector targets;
    if (!bindingRel) {
        return;
    }
    _materialPurpose = _PurposeOf(bindingRel);
    bindingRel.GetForwardedTargets(&targets);
    if (targets.size() == 1 && targets.front().IsPrimPath()) {
        _materialPath = targets.front();
    }
}

UsdShadeMaterial UsdShadeMaterialBindingAPI::DirectBinding::GetMaterial() const
{
    return IsBound() ? UsdShadeMaterial(_bindingRel.GetStage()->GetPrimAtPath(_materialPath))
                     : UsdShadeMaterial();
}

UsdRelationship UsdShadeMaterialBindingAPI::GetDirectBindingRel(const TfToken& materialPurpose) const
{
    return GetPrim().GetRelationship(_RelName(materialPurpose));
}

UsdShadeMaterialBindingAPI::DirectBinding
UsdShadeMaterialBindingAPI::GetDirectBinding(const TfToken& materialPurpose) const
{
    return DirectBinding(GetDirectBindingRel(materialPurpose));
}

TfToken UsdShadeMaterialBindingAPI::GetMaterialBindingStrength(const UsdRelationship& bindingRel)
{
    TfToken strength;
    bindingRel.GetMetadata(UsdShadeTokens->bindMaterialAs, &strength);
    return strength.IsEmpty() ? UsdShadeTokens->weakerThanDescendants : strength;
}

bool UsdShadeMaterialBindingAPI::SetMaterialBindingStrength(const UsdRelationship& bindingRel,
                                                            const TfToken& bindingStrength)
{
    if (bindingStrength != UsdShadeTokens->fallbackStrength) {
        return bindingRel.SetMetadata(UsdShadeTokens->bindMaterialAs, bindingStrength);
    }
    // The fallback is authored only to hide something else.
    return GetMaterialBindingStrength(bindingRel) == UsdShadeTokens->weakerThanDescendants ||
           bindingRel.SetMetadata(UsdShadeTokens->bindMaterialAs, UsdShadeTokens->weakerThanDescendants);
}

bool UsdShadeMaterialBindingAPI::Bind(const UsdShadeMaterial& material, const TfToken& bindingStrength,
                                      const TfToken& materialPurpose) const
{
    const UsdRelationship rel = GetPrim().CreateRelationship(_RelName(materialPurpose), /*custom=*/false);
    return rel && SetMaterialBindingStrength(rel, bindingStrength) && rel.SetTargets({material.GetPath()});
}

bool UsdShadeMaterialBindingAPI::UnbindDirectBinding(const TfToken& materialPurpose) const
{
    const UsdRelationship rel = GetPrim().CreateRelationship(_RelName(materialPurpose), /*custom=*/false);
    return rel && rel.SetTargets({});
}

bool UsdShadeMaterialBindingAPI::UnbindAllBindings() const
{
    bool done = true;
    const std::string name = UsdShadeTokens->materialBinding.GetString();
    std::vector<UsdProperty> bindings = GetPrim().GetPropertiesInNamespace(name);
    if (const UsdRelationship rel = GetDirectBindingRel()) {
        bindings.push_back(rel);
    }
    for (const UsdProperty& property : bindings) {
        if (const UsdRelationship rel = property.As<UsdRelationship>()) {
            done = rel.SetTargets({}) && done;
        }
    }
    return done;
}

UsdShadeMaterial UsdShadeMaterialBindingAPI::ComputeBoundMaterial(const TfToken& materialPurpose,
                                                                  UsdRelationship* bindingRel) const
{
    if (!GetPrim()) {
        TF_CODING_ERROR("No material is bound to %s.", UsdDescribe(GetPrim()).c_str());
        return UsdShadeMaterial();
    }
    TfTokenVector purposes = {materialPurpose};
    if (materialPurpose != UsdShadeTokens->allPurpose) {
        purposes.push_back(UsdShadeTokens->allPurpose);
    }
    for (const TfToken& purpose : purposes) {
        DirectBinding winner;
        for (UsdPrim prim = GetPrim(); prim && !prim.IsPseudoRoot(); prim = prim.GetParent()) {
            const DirectBinding binding = UsdShadeMaterialBindingAPI(prim).GetDirectBinding(purpose);
            if (binding.IsBound() &&
                (!winner.IsBound() || GetMaterialBindingStrength(binding.GetBindingRel()) ==
                                          UsdShadeTokens->strongerThanDescendants)) {
                winner = binding;
            }
        }
        if (const UsdShadeMaterial material = winner.GetMaterial()) {
            if (bindingRel) {
                *bindingRel = winner.GetBindingRel();
            }
            return material;
        }
    }
    return UsdShadeMaterial();
}

std::vector<UsdGeomSubset> UsdShadeMaterialBindingAPI::GetMaterialBindSubsets() const
{
    return UsdGeomSubset::GetGeomSubsets(UsdGeomImageable(GetPrim()), TfToken(),
                                         UsdShadeTokens->materialBind);
}

PXR_NAMESPACE_CLOSE_SCOPE
