#include "material_binding.h"

#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usdShade/materialBindingAPI.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

const TfToken& previewPurpose()
{
    static const TfToken purpose("preview");
    return purpose;
}

} // namespace

void applyMaterialBinding(const UsdPrim& prim, InheritedState& state)
{
    if (!state.hasCollections && prim.HasAPI<UsdShadeMaterialBindingAPI>()) {
        state.hasCollections = !prim.GetAuthoredPropertiesInNamespace("material:binding:collection").empty();
    }
    if (state.materialIsStronger) return;
    static const TfToken names[2] = {TfToken("material:binding:preview"), TfToken("material:binding")};
    static const TfToken strengthKey("bindMaterialAs");
    for (const TfToken& name : names) {
        const UsdRelationship binding = prim.GetRelationship(name);
        SdfPathVector targets;
        if (!binding || !binding.GetTargets(&targets) || targets.empty()) continue;
        TfToken strength;
        state.materialIsStronger =
            binding.GetMetadata(strengthKey, &strength) && strength == "strongerThanDescendants";
        state.material = targets.front();
        return;
    }
}

SdfPath materialOf(const UsdPrim& prim, const InheritedState& state)
{
    if (!state.hasCollections) return state.material;
    const UsdShadeMaterial material = UsdShadeMaterialBindingAPI(prim).ComputeBoundMaterial(previewPurpose());
    return material ? material.GetPrim().GetPath() : SdfPath();
}

} // namespace vesk::renderers::embree
