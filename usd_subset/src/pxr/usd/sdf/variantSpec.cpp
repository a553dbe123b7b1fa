#include "pxr/usd/sdf/childPaths.h"
#include "pxr/usd/sdf/specEdit.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/variantSetSpec.h>
#include <pxr/usd/sdf/variantSpec.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

SdfVariantSetSpecHandle makeSet(const SdfSpecHandle& owner, const std::string& name)
{
    if (!owner || !SdfSchemaBase::IsValidVariantIdentifier(name) || name.empty()) {
        TF_CODING_ERROR("Cannot create variant set '%s': %s", name.c_str(),
                        owner ? "it is not a valid name" : "the owner is invalid");
        return SdfVariantSetSpecHandle();
    }
    const SdfLayerHandle layer = owner->GetLayer();
    const SdfPath path = owner->GetPath().AppendVariantSelection(name, std::string());
    if (path.IsEmpty() || !Sdf_LayerEdit::CreateSpec(layer, path, SdfSpecTypeVariantSet, false)) {
        return SdfVariantSetSpecHandle();
    }
    return TfDynamic_cast<SdfVariantSetSpecHandle>(layer->GetObjectAtPath(path));
}

} // namespace

SdfVariantSetSpecHandle SdfVariantSetSpec::New(const SdfPrimSpecHandle& prim, const std::string& name)
{
    return makeSet(prim, name);
}

SdfVariantSetSpecHandle SdfVariantSetSpec::New(const SdfVariantSpecHandle& prim, const std::string& name)
{
    return makeSet(prim, name);
}

std::string SdfVariantSetSpec::GetName() const { return GetPath().GetVariantSelection().first; }

TfToken SdfVariantSetSpec::GetNameToken() const { return TfToken(GetName()); }

SdfSpecHandle SdfVariantSetSpec::GetOwner() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetObjectAtPath(GetPath().GetParentPath()) : SdfSpecHandle();
}

SdfVariantView SdfVariantSetSpec::GetVariants() const { return SdfVariantView(GetLayer(), GetPath()); }

SdfVariantSpecHandleVector SdfVariantSetSpec::GetVariantList() const { return GetVariants().values(); }

void SdfVariantSetSpec::RemoveVariant(const SdfVariantSpecHandle& variant)
{
    if (!variant || variant->GetLayer() != GetLayer() ||
        Sdf_ListingParentOf(variant->GetPath()) != GetPath()) {
        TF_CODING_ERROR("Cannot remove a variant that does not belong to the variant set %s",
                        GetName().c_str());
        return;
    }
    Sdf_LayerEdit::DeleteSpec(GetLayer(), variant->GetPath());
}

SdfVariantSpecHandle SdfVariantSpec::New(const SdfVariantSetSpecHandle& owner, const std::string& name)
{
    if (!owner || name.empty() || !SdfSchemaBase::IsValidVariantIdentifier(name)) {
        TF_CODING_ERROR("Cannot create variant '%s': %s", name.c_str(),
                        owner ? "it is not a valid name" : "the variant set is invalid");
        return SdfVariantSpecHandle();
    }
    const SdfLayerHandle layer = owner->GetLayer();
    const SdfPath set = owner->GetPath();
    const SdfPath path = set.GetParentPath().AppendVariantSelection(set.GetVariantSelection().first, name);
    if (!Sdf_LayerEdit::CreateSpec(layer, path, SdfSpecTypeVariant, false)) {
        return SdfVariantSpecHandle();
    }
    return TfDynamic_cast<SdfVariantSpecHandle>(layer->GetObjectAtPath(path));
}

std::string SdfVariantSpec::GetName() const { return GetPath().GetVariantSelection().second; }

TfToken SdfVariantSpec::GetNameToken() const { return TfToken(GetName()); }

SdfVariantSetSpecHandle SdfVariantSpec::GetOwner() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? TfDynamic_cast<SdfVariantSetSpecHandle>(
                       layer->GetObjectAtPath(Sdf_ListingParentOf(GetPath())))
                 : SdfVariantSetSpecHandle();
}

SdfPrimSpecHandle SdfVariantSpec::GetPrimSpec() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetPrimAtPath(GetPath()) : SdfPrimSpecHandle();
}

SdfVariantSetsProxy SdfVariantSpec::GetVariantSets() const
{
    return SdfVariantSetsProxy(SdfVariantSetView(GetLayer(), GetPath()));
}

std::vector<std::string> SdfVariantSpec::GetVariantNames(const std::string& name) const
{
    return SdfVariantView(GetLayer(), GetPath().AppendVariantSelection(name, std::string())).keys();
}

SdfVariantSpecHandle SdfCreateVariantInLayer(const SdfLayerHandle& layer, const SdfPath& primPath,
                                             const std::string& variantSetName,
                                             const std::string& variantName)
{
    SdfChangeBlock block;
    const SdfPrimSpecHandle prim = SdfCreatePrimInLayer(layer, primPath);
    if (!prim) {
        return SdfVariantSpecHandle();
    }
    SdfVariantSetSpecHandle set = prim->GetVariantSets()[variantSetName];
    if (!set) {
        set = SdfVariantSetSpec::New(prim, variantSetName);
        if (set) {
            prim->GetVariantSetNameList().Prepend(variantSetName);
        }
    }
    if (!set) {
        return SdfVariantSpecHandle();
    }
    const SdfVariantSpecHandle variant = set->GetVariants()[variantName];
    return variant ? variant : SdfVariantSpec::New(set, variantName);
}

PXR_NAMESPACE_CLOSE_SCOPE
