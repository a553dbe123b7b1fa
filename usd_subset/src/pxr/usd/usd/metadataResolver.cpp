#include "pxr/usd/usd/metadataResolver.h"

#include "pxr/usd/usd/listOpUtils.h"
#include "pxr/usd/usd/metadataFields.h"
#include "pxr/usd/usd/primFields.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/stageImpl.h"
#include "pxr/usd/usd/valueUtils.h"

#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void mergeUnder(VtValue* stronger, const VtValue& weaker)
{
    if (!stronger->IsHolding<VtDictionary>() || !weaker.IsHolding<VtDictionary>()) {
        return;
    }
    VtDictionary merged;
    stronger->UncheckedSwap(merged);
    VtDictionaryOverRecursive(&merged, weaker.UncheckedGet<VtDictionary>());
    stronger->UncheckedSwap(merged);
}

bool readField(const SdfLayer& layer, const SdfPath& path, const TfToken& field, const TfToken& keyPath,
               VtValue* value)
{
    return keyPath.IsEmpty() ? layer.HasField(path, field, value)
                             : layer.HasFieldDictKey(path, field, keyPath, value);
}

} // namespace

Usd_MetadataResolver::Usd_MetadataResolver(const UsdObject& object)
    : _object(object),
      _prim(Usd_ObjectAccess::GetData(object)),
      _name(Usd_ObjectAccess::GetPropertyName(object))
{}

VtValueVector Usd_MetadataResolver::_GetOpinions(const TfToken& field, const TfToken& keyPath,
                                                 bool firstOnly) const
{
    VtValueVector opinions;
    const Usd_StageImpl& stage = Usd_ObjectAccess::GetImpl(_object);
    const bool isPseudoRoot = _IsPseudoRoot();
    for (Usd_PropertySites sites(*_prim, _name); sites; ++sites) {
        const SdfLayer* const layer = &sites.GetLayer();
        // Of the stage itself only its two roots speak.
        if (isPseudoRoot && layer != get_pointer(stage.rootLayer) &&
            layer != get_pointer(stage.sessionLayer)) {
            continue;
        }
        VtValue opinion;
        if (readField(*layer, sites.GetPath(), field, keyPath, &opinion)) {
            Usd_ApplyLayerOffset(sites.GetOffset(), &opinion);
            Usd_ResolveAssetPaths(
                SdfLayerHandle(&sites.GetLayer()), stage.resolverContext,
                [&](const std::string& text) {
                    return Usd_EvaluateExpression(*sites.GetNode().layerStack, text, sites.GetLayer(),
                                                  sites.GetPath());
                },
                &opinion);
            opinions.push_back(std::move(opinion));
            if (firstOnly || (!opinions.back().IsHolding<VtDictionary>() && !Usd_IsListOp(opinions.back()))) {
                break; // nothing weaker counts
            }
        }
    }
    return opinions;
}

bool Usd_MetadataResolver::Get(const TfToken& field, const TfToken& keyPath, bool useFallbacks,
                               VtValue* value) const
{
    bool isSpecial = false;
    if (keyPath.IsEmpty() && _GetSpecial(field, value, &isSpecial)) {
        return true;
    }
    if (isSpecial) {
        return false;
    }
    VtValueVector opinions = _GetOpinions(field, keyPath, false);
    VtValue fallback;
    if (useFallbacks && _GetFallback(field, keyPath, &fallback)) {
        opinions.push_back(std::move(fallback));
    }
    if (opinions.empty()) {
        return false;
    }
    if (Usd_IsListOp(opinions.front())) {
        *value = Usd_ComposeListOps(opinions);
        return true;
    }
    VtValue result = std::move(opinions.front());
    for (size_t i = 1; i < opinions.size(); ++i) {
        mergeUnder(&result, opinions[i]);
    }
    *value = std::move(result);
    return true;
}

bool Usd_MetadataResolver::Has(const TfToken& field, const TfToken& keyPath, bool useFallbacks) const
{
    bool isSpecial = false;
    VtValue value;
    if (keyPath.IsEmpty() && _GetSpecial(field, &value, &isSpecial)) {
        return true;
    }
    return !isSpecial && (!_GetOpinions(field, keyPath, true).empty() ||
                          (useFallbacks && _GetFallback(field, keyPath, &value)));
}

bool Usd_MetadataResolver::_GetSpecial(const TfToken& field, VtValue* value, bool* isSpecial) const
{
    if (_IsPseudoRoot()) {
        return false;
    }
    if (_name.IsEmpty()) {
        return _GetSpecialOfPrim(field, value, isSpecial);
    }
    const auto builtin = _prim->GetPrimDefinition().GetPropertyDefinition(_name);
    if (field == SdfFieldKeys->Custom) {
        *isSpecial = true;
        if (builtin) {
            *value = false;
            return true;
        }
        return _GetWeakest(field, value);
    }
    if (Usd_ObjectAccess::GetType(_object) != UsdTypeAttribute) {
        return false;
    }
    if (field == SdfFieldKeys->TypeName) {
        // The schema has the last word on the type of its attributes.
        return builtin && builtin.GetMetadata(field, value);
    }
    if (field == SdfFieldKeys->Variability) {
        *isSpecial = true;
        if (builtin) {
            *value = builtin.GetVariability();
            return true;
        }
        return _GetWeakest(field, value);
    }
    return false;
}

bool Usd_MetadataResolver::_GetSpecialOfPrim(const TfToken& field, VtValue* value, bool* isSpecial) const
{
    if (field == SdfFieldKeys->TypeName) {
        *isSpecial = true;
        const TfToken typeName = Usd_PrimFields::GetTypeName(_prim->GetPrimIndex());
        if (typeName.IsEmpty()) {
            return false;
        }
        *value = typeName;
        return true;
    }
    if (field == SdfFieldKeys->Specifier) {
        *isSpecial = true;
        *value = _prim->GetSpecifier();
        return true;
    }
    return false;
}

bool Usd_MetadataResolver::_GetWeakest(const TfToken& field, VtValue* value) const
{
    bool found = false;
    for (Usd_PropertySites sites(*_prim, _name); sites; ++sites) {
        found = sites.GetLayer().HasField(sites.GetPath(), field, value) || found;
    }
    return found;
}

bool Usd_MetadataResolver::_GetFallback(const TfToken& field, const TfToken& keyPath, VtValue* value) const
{
    return Usd_GetFallbackValue(_prim->GetPrimDefinition(), _name, field, keyPath, value);
}

TfTokenVector Usd_MetadataResolver::_ListFields(bool useFallbacks) const
{
    TfTokenVector fields;
    const Usd_StageImpl& stage = Usd_ObjectAccess::GetImpl(_object);
    SdfSpecType type = _IsPseudoRoot()   ? SdfSpecTypePseudoRoot
                       : _name.IsEmpty() ? SdfSpecTypePrim
                                         : _prim->GetPrimDefinition().GetSpecType(_name);
    for (Usd_PropertySites sites(*_prim, _name); sites; ++sites) {
        const SdfLayer* const layer = &sites.GetLayer();
        if (_IsPseudoRoot() && layer != get_pointer(stage.rootLayer) &&
            layer != get_pointer(stage.sessionLayer)) {
            continue;
        }
        const TfTokenVector authored = layer->ListFields(sites.GetPath());
        fields.insert(fields.end(), authored.begin(), authored.end());
        if (type == SdfSpecTypeUnknown) {
            type = layer->GetSpecType(sites.GetPath());
        }
    }
    if (useFallbacks && !_name.IsEmpty()) {
        const TfTokenVector builtin = _prim->GetPrimDefinition().ListPropertyMetadataFields(_name);
        fields.insert(fields.end(), builtin.begin(), builtin.end());
    }
    // Prims without specs, as relocates make them, have no field.
    if (type != SdfSpecTypePrim || _prim->GetPrimIndex().HasSpecs()) {
        Usd_AddRequiredFields(type, &fields);
    }
    fields.erase(std::remove_if(fields.begin(), fields.end(), &Usd_IsPrivateField), fields.end());
    std::sort(fields.begin(), fields.end(), TfDictionaryLessThan());
    fields.erase(std::unique(fields.begin(), fields.end()), fields.end());
    return fields;
}

UsdMetadataValueMap Usd_MetadataResolver::GetAll(bool useFallbacks) const
{
    UsdMetadataValueMap result;
    for (const TfToken& field : _ListFields(useFallbacks)) {
        VtValue value;
        Get(field, TfToken(), useFallbacks, &value);
        result[field] = value;
    }
    return result;
}

PXR_NAMESPACE_CLOSE_SCOPE
