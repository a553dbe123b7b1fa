#include "pxr/usd/usd/specEditor.h"

#include "pxr/usd/usd/errorText.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/stageImpl.h"
#include "pxr/usd/usd/valueUtils.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/opaqueValue.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

const char* Usd_SpecEditor::_LayerName() const
{
    return _stage.editTarget.IsValid() ? _stage.editTarget.GetLayer()->GetIdentifier().c_str() : "";
}

SdfLayerOffset Usd_SpecEditor::_ToLayerTime() const
{
    return _stage.editTarget.GetMapFunction().GetTimeOffset().GetInverse();
}

bool Usd_SpecEditor::CanEdit(const UsdPrim& prim, const char* operation) const
{
    if (prim.IsInPrototype()) {
        TF_CODING_ERROR("Cannot %s at path <%s>; authoring to an instancing prototype is not allowed.",
                        operation, prim.GetPath().GetText());
        return false;
    }
    if (prim.IsInstanceProxy()) {
        TF_CODING_ERROR("Cannot %s at path <%s>; authoring to an instance proxy is not allowed.", operation,
                        prim.GetPath().GetText());
        return false;
    }
    return true;
}

bool Usd_SpecEditor::CanEdit(const SdfPath& path, const char* operation) const
{
    if (UsdPrim::IsPathInPrototype(path)) {
        TF_CODING_ERROR("Cannot %s at path <%s>; authoring to an instancing prototype is not allowed.",
                        operation, path.GetText());
        return false;
    }
    for (SdfPath above = path.GetParentPath(); !above.IsEmpty() && !above.IsAbsoluteRootPath();
         above = above.GetParentPath()) {
        const Usd_PrimData* const prim = _stage.prims.Find(above);
        if (prim && prim->IsInstance()) {
            TF_CODING_ERROR("Cannot %s at path <%s>; authoring to an instance proxy is not allowed.",
                            operation, path.GetText());
            return false;
        }
    }
    return true;
}

SdfPrimSpecHandle Usd_SpecEditor::CreatePrimSpec(const SdfPath& path) const
{
    const SdfPath specPath = _stage.editTarget.MapToSpecPath(path);
    return specPath.IsEmpty() ? SdfPrimSpecHandle()
                              : SdfCreatePrimInLayer(_stage.editTarget.GetLayer(), specPath);
}

SdfPrimSpecHandle Usd_SpecEditor::CreatePrimSpec(const UsdPrim& prim) const
{
    return CanEdit(prim, "create prim spec") ? CreatePrimSpec(prim.GetPath()) : SdfPrimSpecHandle();
}

SdfPropertySpecHandle Usd_SpecEditor::CreatePropertySpec(const UsdProperty& property) const
{
    if (!CanEdit(property.GetPrim(), "create property spec")) {
        return {};
    }
    if (const SdfPropertySpecHandle spec =
            _stage.editTarget.GetPropertySpecForScenePath(property.GetPath())) {
        return spec;
    }
    const SdfPropertySpecHandle spec = _CreateFromSchema(property);
    return spec ? spec : _CreateLikeStrongest(property);
}

SdfPropertySpecHandle Usd_SpecEditor::_CreateFromSchema(const UsdProperty& property) const
{
    const UsdPrim prim = property.GetPrim();
    const auto builtin = prim.GetPrimDefinition().GetPropertyDefinition(property.GetName());
    if (!builtin) {
        return {};
    }
    SdfChangeBlock block;
    const SdfPrimSpecHandle owner = CreatePrimSpec(prim);
    if (!owner) {
        return {};
    }
    if (builtin.IsRelationship()) {
        return SdfRelationshipSpec::New(owner, property.GetName().GetString(), false,
                                        builtin.GetVariability());
    }
    const UsdPrimDefinition::Attribute attribute(builtin);
    return SdfAttributeSpec::New(owner, property.GetName().GetString(), attribute.GetTypeName(),
                                 attribute.GetVariability());
}

SdfPropertySpecHandle Usd_SpecEditor::_CreateLikeStrongest(const UsdProperty& property) const
{
    const UsdPrim prim = property.GetPrim();
    for (Usd_PropertySites sites(*Usd_ObjectAccess::GetData(prim), property.GetName()); sites; ++sites) {
        SdfLayer& layer = sites.GetLayer();
        const SdfAttributeSpecHandle attribute = layer.GetAttributeAtPath(sites.GetPath());
        const SdfRelationshipSpecHandle relationship =
            attribute ? SdfRelationshipSpecHandle() : layer.GetRelationshipAtPath(sites.GetPath());
        if (!attribute && !relationship) {
            continue;
        }
        SdfChangeBlock block;
        const SdfPrimSpecHandle owner = CreatePrimSpec(prim);
        if (!owner) {
            return {};
        }
        if (attribute) {
            return SdfAttributeSpec::New(owner, property.GetName().GetString(), attribute->GetTypeName(),
                                         attribute->GetVariability(), attribute->IsCustom());
        }
        return SdfRelationshipSpec::New(owner, property.GetName().GetString(), relationship->IsCustom(),
                                        relationship->GetVariability());
    }
    return {};
}

SdfAttributeSpecHandle Usd_SpecEditor::CreateAttributeSpec(const UsdAttribute& attribute) const
{
    const SdfPropertySpecHandle spec = CreatePropertySpec(attribute);
    const SdfAttributeSpecHandle result = TfDynamic_cast<SdfAttributeSpecHandle>(spec);
    if (spec && !result) {
        TF_RUNTIME_ERROR(
            "Spec type mismatch.  Failed to create attribute spec for <%s> in @%s@.  A relationship is "
            "already at that location.",
            attribute.GetPath().GetText(), _LayerName());
    }
    return result;
}

SdfAttributeSpecHandle Usd_SpecEditor::CreateAttributeSpec(const UsdAttribute& attribute,
                                                           const SdfValueTypeName& typeName, bool custom,
                                                           SdfVariability variability) const
{
    TfErrorMark mark;
    if (const SdfAttributeSpecHandle spec = CreateAttributeSpec(attribute)) {
        return spec;
    }
    if (!mark.IsClean()) {
        return {};
    }
    SdfChangeBlock block;
    const SdfPrimSpecHandle owner = CreatePrimSpec(attribute.GetPrim());
    return owner
               ? SdfAttributeSpec::New(owner, attribute.GetName().GetString(), typeName, variability, custom)
               : SdfAttributeSpecHandle();
}

SdfRelationshipSpecHandle Usd_SpecEditor::CreateRelationshipSpec(const UsdRelationship& relationship,
                                                                 bool fallbackCustom) const
{
    TfErrorMark mark;
    const SdfPropertySpecHandle spec = CreatePropertySpec(relationship);
    const SdfRelationshipSpecHandle result = TfDynamic_cast<SdfRelationshipSpecHandle>(spec);
    if (spec && !result) {
        TF_RUNTIME_ERROR(
            "Spec type mismatch.  Failed to create relationship spec for <%s> in @%s@.  An attribute is "
            "already at that location.",
            relationship.GetPath().GetText(), _LayerName());
    }
    if (spec || !mark.IsClean()) {
        return result;
    }
    SdfChangeBlock block;
    const SdfPrimSpecHandle owner = CreatePrimSpec(relationship.GetPrim());
    return owner ? SdfRelationshipSpec::New(owner, relationship.GetName().GetString(), fallbackCustom)
                 : SdfRelationshipSpecHandle();
}

bool Usd_SpecEditor::SetMetadata(const UsdObject& object, const TfToken& field, const TfToken& keyPath,
                                 VtValue value) const
{
    if (!SdfSchema::GetInstance().IsRegistered(field)) {
        TF_CODING_ERROR("Unregistered metadata field: %s", field.GetText());
        return false;
    }
    SdfSpecHandle spec;
    if (object.Is<UsdProperty>()) {
        spec = CreatePropertySpec(object.As<UsdProperty>());
    } else if (object.Is<UsdPrim>()) {
        spec = CreatePrimSpec(object.As<UsdPrim>());
    }
    const SdfPath specPath = _stage.editTarget.MapToSpecPath(object.GetPath());
    if (!spec) {
        TF_CODING_ERROR("Cannot set metadata. Failed to create spec <%s> in layer @%s@", specPath.GetText(),
                        _LayerName());
        return false;
    }
    const SdfSpecType type = spec->GetSpecType();
    if (!SdfSchema::GetInstance().IsValidFieldForSpec(field, type)) {
        TF_CODING_ERROR("Cannot set metadata. '%s' is not registered as valid metadata for spec type %s.",
                        field.GetText(), TfStringify(type).c_str());
        return false;
    }
    Usd_ApplyLayerOffset(_ToLayerTime(), &value);
    if (keyPath.IsEmpty()) {
        spec->GetLayer()->SetField(spec->GetPath(), field, value);
    } else {
        spec->GetLayer()->SetFieldDictValueByKey(spec->GetPath(), field, keyPath, value);
    }
    return true;
}

bool Usd_SpecEditor::ClearMetadata(const UsdObject& object, const TfToken& field,
                                   const TfToken& keyPath) const
{
    if (!CanEdit(object.GetPrim(), "clear metadata")) {
        return false;
    }
    if (!_stage.editTarget.IsValid()) {
        TF_CODING_ERROR("EditTarget does not contain a valid layer.");
        return false;
    }
    const SdfLayerHandle layer = _stage.editTarget.GetLayer();
    const SdfPath path = _stage.editTarget.MapToSpecPath(object.GetPath());
    if (!layer->HasSpec(path)) {
        return true;
    }
    if (!SdfSchema::GetInstance().IsValidFieldForSpec(field, layer->GetSpecType(path))) {
        TF_CODING_ERROR("Cannot clear metadata. '%s' is not registered as valid metadata for spec type %s.",
                        field.GetText(), TfStringify(layer->GetSpecType(path)).c_str());
        return false;
    }
    if (keyPath.IsEmpty()) {
        layer->EraseField(path, field);
    } else {
        layer->EraseFieldDictValueByKey(path, field, keyPath);
    }
    return true;
}

bool Usd_SpecEditor::_CheckType(const UsdAttribute& attribute, const VtValue& value) const
{
    if (value.IsHolding<SdfValueBlock>()) {
        return true;
    }
    const SdfValueTypeName typeName = attribute.GetTypeName();
    if (!typeName) {
        TF_RUNTIME_ERROR("Empty typeName for <%s>", attribute.GetPath().GetText());
        return false;
    }
    const TfType type = typeName.GetType();
    if (!type) {
        TF_RUNTIME_ERROR("Unknown typename for <%s>: '%s'", attribute.GetPath().GetText(),
                         typeName.GetAsToken().GetText());
        return false;
    }
    if (type.GetTypeid() == typeid(SdfOpaqueValue)) {
        TF_CODING_ERROR(
            "Can't set value on <%s>: opaque-typed attributes cannot have an authored default value",
            attribute.GetPath().GetText());
        return false;
    }
    const std::type_info& given = value.IsEmpty() ? typeid(void) : value.GetTypeid();
    if (given != type.GetTypeid()) {
        TF_CODING_ERROR("Type mismatch for <%s>: expected '%s', got '%s'", attribute.GetPath().GetText(),
                        Usd_TypeName(type.GetTypeid()).c_str(), Usd_TypeName(given).c_str());
        return false;
    }
    return true;
}

bool Usd_SpecEditor::SetValue(const UsdAttribute& attribute, VtValue value, UsdTimeCode time) const
{
    if (!_CheckType(attribute, value)) {
        return false;
    }
    const SdfAttributeSpecHandle spec = CreateAttributeSpec(attribute);
    if (!spec) {
        TF_RUNTIME_ERROR("Cannot set attribute value.  Failed to create attribute spec <%s> in layer @%s@",
                         _stage.editTarget.MapToSpecPath(attribute.GetPath()).GetText(), _LayerName());
        return false;
    }
    Usd_ApplyLayerOffset(_ToLayerTime(), &value);
    if (time.IsDefault()) {
        spec->GetLayer()->SetField(spec->GetPath(), SdfFieldKeys->Default, value);
    } else {
        spec->GetLayer()->SetTimeSample(spec->GetPath(), _ToLayerTime() * time.GetValue(), value);
    }
    return true;
}

bool Usd_SpecEditor::ClearValue(const UsdAttribute& attribute, UsdTimeCode time) const
{
    if (time.IsDefault()) {
        return ClearMetadata(attribute, SdfFieldKeys->Default, TfToken());
    }
    if (!CanEdit(attribute.GetPrim(), "clear attribute value")) {
        return false;
    }
    if (!_stage.editTarget.IsValid()) {
        TF_CODING_ERROR("EditTarget does not contain a valid layer.");
        return false;
    }
    const SdfPath path = _stage.editTarget.MapToSpecPath(attribute.GetPath());
    if (_stage.editTarget.GetLayer()->HasSpec(path)) {
        _stage.editTarget.GetLayer()->EraseTimeSample(path, _ToLayerTime() * time.GetValue());
    }
    return true;
}

bool Usd_SpecEditor::RemoveProperty(const SdfPath& path) const
{
    const SdfPropertySpecHandle spec = _stage.editTarget.GetPropertySpecForScenePath(path);
    if (!spec) {
        return false;
    }
    if (const SdfPrimSpecHandle owner = TfDynamic_cast<SdfPrimSpecHandle>(spec->GetOwner())) {
        owner->RemoveProperty(spec);
        return true;
    }
    return false;
}

PXR_NAMESPACE_CLOSE_SCOPE
