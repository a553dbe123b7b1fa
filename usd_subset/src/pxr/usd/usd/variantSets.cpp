#include <pxr/usd/usd/variantSets.h>

#include "pxr/usd/usd/listEdits.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"
#include "pxr/usd/usd/variantOpinions.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/variantSetSpec.h>
#include <pxr/usd/sdf/variantSpec.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The set's spec on a prim spec, made where it is missing and named in the prim's list of sets.
SdfVariantSetSpecHandle makeVariantSet(const SdfPrimSpecHandle& prim, const std::string& name,
                                       UsdListPosition position)
{
    const SdfPath path = prim->GetPath().AppendVariantSelection(name, std::string());
    if (path.IsEmpty()) {
        return {};
    }
    const SdfSpecHandle known = prim->GetLayer()->GetObjectAtPath(path);
    const SdfVariantSetSpecHandle set =
        known ? TfDynamic_cast<SdfVariantSetSpecHandle>(known) : SdfVariantSetSpec::New(prim, name);
    Usd_InsertListItem(prim->GetVariantSetNameList(), name, position);
    return set;
}

} // namespace

SdfPrimSpecHandle UsdVariantSet::_CreatePrimSpecForEditing()
{
    return Usd_SpecEditor(Usd_ObjectAccess::GetImpl(_prim)).CreatePrimSpec(_prim);
}

bool UsdVariantSet::AddVariant(const std::string& variantName, UsdListPosition position)
{
    SdfChangeBlock block;
    const SdfPrimSpecHandle prim = _CreatePrimSpecForEditing();
    const SdfVariantSetSpecHandle set =
        prim ? makeVariantSet(prim, _variantSetName, position) : SdfVariantSetSpecHandle();
    if (!set) {
        return false;
    }
    for (const SdfVariantSpecHandle& variant : set->GetVariants()) {
        if (variant->GetName() == variantName) {
            return true;
        }
    }
    return static_cast<bool>(SdfVariantSpec::New(set, variantName));
}

std::vector<std::string> UsdVariantSet::GetVariantNames() const
{
    const std::set<std::string> names = Usd_VariantOpinions(Usd_ObjectAccess::GetData(_prim)->GetPrimIndex())
                                            .GetVariantNames(_variantSetName);
    return {names.begin(), names.end()};
}

bool UsdVariantSet::HasAuthoredVariant(const std::string& variantName) const
{
    const std::vector<std::string> names = GetVariantNames();
    return std::find(names.begin(), names.end(), variantName) != names.end();
}

std::string UsdVariantSet::GetVariantSelection() const
{
    return Usd_VariantOpinions(Usd_ObjectAccess::GetData(_prim)->GetPrimIndex())
        .GetSelection(_variantSetName);
}

bool UsdVariantSet::HasAuthoredVariantSelection(std::string* value) const
{
    std::string ignored;
    return Usd_VariantOpinions(Usd_ObjectAccess::GetData(_prim)->GetPrimIndex())
        .GetAuthoredSelection(_variantSetName, value ? value : &ignored);
}

bool UsdVariantSet::SetVariantSelection(const std::string& variantName)
{
    const SdfPrimSpecHandle prim = _CreatePrimSpecForEditing();
    if (prim) {
        prim->SetVariantSelection(_variantSetName, variantName);
    }
    return static_cast<bool>(prim);
}

bool UsdVariantSet::ClearVariantSelection() { return SetVariantSelection(std::string()); }

bool UsdVariantSet::BlockVariantSelection()
{
    const SdfPrimSpecHandle prim = _CreatePrimSpecForEditing();
    if (prim) {
        prim->BlockVariantSelection(_variantSetName);
    }
    return static_cast<bool>(prim);
}

UsdEditTarget UsdVariantSet::GetVariantEditTarget(const SdfLayerHandle& layer) const
{
    const std::string selection = GetVariantSelection();
    if (selection.empty()) {
        return UsdEditTarget();
    }
    const UsdStagePtr stage = _prim.GetStage();
    const SdfLayerHandle& target = layer ? layer : stage->GetEditTarget().GetLayer();
    if (!stage->HasLocalLayer(target)) {
        TF_CODING_ERROR("Layer %s is not a local layer of stage rooted at layer %s",
                        target->GetIdentifier().c_str(), stage->GetRootLayer()->GetIdentifier().c_str());
        return UsdEditTarget();
    }
    return UsdEditTarget::ForLocalDirectVariant(target,
                                                stage->GetEditTarget()
                                                    .MapToSpecPath(_prim.GetPath())
                                                    .AppendVariantSelection(_variantSetName, selection));
}

std::pair<UsdStagePtr, UsdEditTarget> UsdVariantSet::GetVariantEditContext(const SdfLayerHandle& layer) const
{
    return {UsdStagePtr(_prim.GetStage()), GetVariantEditTarget(layer)};
}

UsdVariantSet UsdVariantSets::AddVariantSet(const std::string& variantSetName, UsdListPosition position)
{
    UsdVariantSet set = GetVariantSet(variantSetName);
    SdfChangeBlock block;
    if (const SdfPrimSpecHandle prim = set._CreatePrimSpecForEditing()) {
        makeVariantSet(prim, variantSetName, position);
    }
    return set;
}

bool UsdVariantSets::GetNames(std::vector<std::string>* names) const
{
    *names = Usd_VariantOpinions(Usd_ObjectAccess::GetData(_prim)->GetPrimIndex()).GetSetNames();
    return true;
}

std::vector<std::string> UsdVariantSets::GetNames() const
{
    std::vector<std::string> names;
    GetNames(&names);
    return names;
}

UsdVariantSet UsdVariantSets::GetVariantSet(const std::string& variantSetName) const
{
    if (!_prim) {
        TF_CODING_ERROR("Invalid prim");
        return UsdVariantSet(UsdPrim(), std::string());
    }
    return UsdVariantSet(_prim, variantSetName);
}

bool UsdVariantSets::HasVariantSet(const std::string& variantSetName) const
{
    const std::vector<std::string> names = GetNames();
    return std::find(names.begin(), names.end(), variantSetName) != names.end();
}

std::string UsdVariantSets::GetVariantSelection(const std::string& variantSetName) const
{
    return GetVariantSet(variantSetName).GetVariantSelection();
}

bool UsdVariantSets::SetSelection(const std::string& variantSetName, const std::string& variantName)
{
    return GetVariantSet(variantSetName).SetVariantSelection(variantName);
}

SdfVariantSelectionMap UsdVariantSets::GetAllVariantSelections() const
{
    SdfVariantSelectionMap selections;
    for (const std::string& name : GetNames()) {
        const std::string selection = GetVariantSelection(name);
        if (!selection.empty()) {
            selections[name] = selection;
        }
    }
    return selections;
}

PXR_NAMESPACE_CLOSE_SCOPE
