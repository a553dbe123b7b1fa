#include "pxr/usd/sdf/specEdit.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>

#include <sstream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Checks what both kinds of properties need and makes the spec; an empty path where that fails.
SdfPath makeProperty(const char* kind, const SdfPrimSpecHandle& owner, const std::string& name,
                     SdfSpecType type, bool custom)
{
    if (!owner) {
        TF_CODING_ERROR("Cannot create %s '%s' on an invalid prim", kind, name.c_str());
        return SdfPath();
    }
    if (!SdfPath::IsValidNamespacedIdentifier(name)) {
        TF_CODING_ERROR("Cannot create %s on %s with invalid name: %s", kind, owner->GetPath().GetText(),
                        name.c_str());
        return SdfPath();
    }
    const SdfPath path = owner->GetPath().AppendProperty(TfToken(name));
    if (path.IsEmpty()) {
        TF_CODING_ERROR("Cannot create %s '%s' on <%s>: it cannot have properties", kind, name.c_str(),
                        owner->GetPath().GetText());
        return SdfPath();
    }
    return Sdf_LayerEdit::CreateSpec(owner->GetLayer(), path, type, !custom) ? path : SdfPath();
}

} // namespace

const std::string& SdfPropertySpec::GetName() const { return GetPath().GetName(); }

TfToken SdfPropertySpec::GetNameToken() const { return GetPath().GetNameToken(); }

bool SdfPropertySpec::CanSetName(const std::string& newName, std::string* whyNot) const
{
    return Sdf_CanRename(*this, TfToken(newName), whyNot);
}

bool SdfPropertySpec::SetName(const std::string& newName, bool validate)
{
    return Sdf_Rename(*this, TfToken(newName), validate);
}

bool SdfPropertySpec::IsValidName(const std::string& name)
{
    return SdfPath::IsValidNamespacedIdentifier(name);
}

SdfSpecHandle SdfPropertySpec::GetOwner() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetObjectAtPath(GetPath().GetParentPath()) : SdfSpecHandle();
}

SdfTimeSampleMap SdfPropertySpec::GetTimeSampleMap() const
{
    return GetFieldAs<SdfTimeSampleMap>(SdfFieldKeys->TimeSamples);
}

TfType SdfPropertySpec::GetValueType() const
{
    return GetSpecType() == SdfSpecTypeRelationship ? TfType::Find<SdfPath>() : GetTypeName().GetType();
}

SdfValueTypeName SdfPropertySpec::GetTypeName() const
{
    return SdfSchema::GetInstance().FindOrCreateType(GetFieldAs<TfToken>(SdfFieldKeys->TypeName));
}

VtValue SdfPropertySpec::GetDefaultValue() const { return GetField(SdfFieldKeys->Default); }

bool SdfPropertySpec::SetDefaultValue(const VtValue& defaultValue)
{
    if (defaultValue.IsEmpty()) {
        ClearDefaultValue();
        return true;
    }
    if (defaultValue.IsHolding<SdfValueBlock>()) {
        return SetField(SdfFieldKeys->Default, defaultValue);
    }
    const SdfValueTypeName typeName = GetTypeName();
    const VtValue& example = typeName.GetDefaultValue();
    const bool same = defaultValue.GetTypeid() == example.GetTypeid();
    const VtValue cast = same ? defaultValue : VtValue::CastToTypeOf(defaultValue, example);
    if (GetSpecType() != SdfSpecTypeAttribute || example.IsEmpty() || cast.IsEmpty()) {
        std::ostringstream text;
        text << defaultValue;
        TF_CODING_ERROR("Can't set default value on <%s> to %s: expected a value of type \"%s\"",
                        GetPath().GetText(), text.str().c_str(), typeName.GetAsToken().GetText());
        return false;
    }
    return SetField(SdfFieldKeys->Default, cast);
}

bool SdfPropertySpec::HasDefaultValue() const { return HasField(SdfFieldKeys->Default); }

void SdfPropertySpec::ClearDefaultValue() { ClearField(SdfFieldKeys->Default); }

bool SdfPropertySpec::IsCustom() const { return GetFieldAs<bool>(SdfFieldKeys->Custom, false); }

void SdfPropertySpec::SetCustom(bool custom) { SetField(SdfFieldKeys->Custom, VtValue(custom)); }

SdfVariability SdfPropertySpec::GetVariability() const
{
    return GetFieldAs<SdfVariability>(SdfFieldKeys->Variability, SdfVariabilityVarying);
}

bool SdfPropertySpec::HasOnlyRequiredFields() const
{
    return Sdf_LayerEdit::IsInert(GetLayer(), GetPath(), true, true);
}

SdfAttributeSpecHandle SdfAttributeSpec::New(const SdfPrimSpecHandle& owner, const std::string& name,
                                             const SdfValueTypeName& typeName, SdfVariability variability,
                                             bool custom)
{
    if (!typeName) {
        TF_CODING_ERROR("Cannot create attribute '%s' with an invalid type", name.c_str());
        return SdfAttributeSpecHandle();
    }
    SdfChangeBlock block;
    const SdfPath path = makeProperty("attribute", owner, name, SdfSpecTypeAttribute, custom);
    if (path.IsEmpty()) {
        return SdfAttributeSpecHandle();
    }
    const SdfLayerHandle layer = owner->GetLayer();
    layer->SetField(path, SdfFieldKeys->Custom, VtValue(custom));
    layer->SetField(path, SdfFieldKeys->TypeName, VtValue(typeName.GetAsToken()));
    layer->SetField(path, SdfFieldKeys->Variability, VtValue(variability));
    return layer->GetAttributeAtPath(path);
}

SdfConnectionsProxy SdfAttributeSpec::GetConnectionPathList() const
{
    return SdfGetPathEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->ConnectionPaths);
}

bool SdfAttributeSpec::HasConnectionPaths() const { return GetConnectionPathList().HasKeys(); }

void SdfAttributeSpec::ClearConnectionPaths() { GetConnectionPathList().ClearEdits(); }

TfToken SdfAttributeSpec::GetRoleName() const { return GetTypeName().GetRole(); }

SdfTimeSampleMap SdfAttributeSpec::GetTimeSampleMap() const { return SdfPropertySpec::GetTimeSampleMap(); }

std::set<double> SdfAttributeSpec::ListTimeSamples() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->ListTimeSamplesForPath(GetPath()) : std::set<double>();
}

size_t SdfAttributeSpec::GetNumTimeSamples() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetNumTimeSamplesForPath(GetPath()) : 0;
}

bool SdfAttributeSpec::GetBracketingTimeSamples(double time, double* tLower, double* tUpper) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->GetBracketingTimeSamplesForPath(GetPath(), time, tLower, tUpper);
}

bool SdfAttributeSpec::QueryTimeSample(double time, VtValue* value) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->QueryTimeSample(GetPath(), time, value);
}

bool SdfAttributeSpec::QueryTimeSample(double time, SdfAbstractDataValue* value) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->QueryTimeSample(GetPath(), time, value);
}

void SdfAttributeSpec::SetTimeSample(double time, const VtValue& value)
{
    if (const SdfLayerHandle layer = GetLayer()) {
        layer->SetTimeSample(GetPath(), time, value);
    }
}

void SdfAttributeSpec::SetTimeSample(double time, const SdfAbstractDataConstValue& value)
{
    if (const SdfLayerHandle layer = GetLayer()) {
        layer->SetTimeSample(GetPath(), time, value);
    }
}

void SdfAttributeSpec::EraseTimeSample(double time)
{
    if (const SdfLayerHandle layer = GetLayer()) {
        layer->EraseTimeSample(GetPath(), time);
    }
}

bool SdfJustCreatePrimAttributeInLayer(const SdfLayerHandle& layer, const SdfPath& attrPath,
                                       const SdfValueTypeName& typeName, SdfVariability variability,
                                       bool isCustom)
{
    if (!layer || !attrPath.IsPrimPropertyPath() || !typeName) {
        TF_CODING_ERROR("Cannot create attribute at <%s>: %s", attrPath.GetText(),
                        !layer      ? "the layer is invalid"
                        : !typeName ? "the type is invalid"
                                    : "it is not the path of a prim's property");
        return false;
    }
    SdfChangeBlock block;
    if (!SdfJustCreatePrimInLayer(layer, attrPath.GetParentPath())) {
        return false;
    }
    if (!layer->HasSpec(attrPath) &&
        !Sdf_LayerEdit::CreateSpec(layer, attrPath, SdfSpecTypeAttribute, !isCustom)) {
        return false;
    }
    layer->SetField(attrPath, SdfFieldKeys->Custom, VtValue(isCustom));
    layer->SetField(attrPath, SdfFieldKeys->TypeName, VtValue(typeName.GetAsToken()));
    layer->SetField(attrPath, SdfFieldKeys->Variability, VtValue(variability));
    return true;
}

SdfRelationshipSpecHandle SdfRelationshipSpec::New(const SdfPrimSpecHandle& owner, const std::string& name,
                                                   bool custom, SdfVariability variability)
{
    SdfChangeBlock block;
    const SdfPath path = makeProperty("relationship", owner, name, SdfSpecTypeRelationship, custom);
    if (path.IsEmpty()) {
        return SdfRelationshipSpecHandle();
    }
    const SdfLayerHandle layer = owner->GetLayer();
    layer->SetField(path, SdfFieldKeys->Custom, VtValue(custom));
    layer->SetField(path, SdfFieldKeys->Variability, VtValue(variability));
    return layer->GetRelationshipAtPath(path);
}

SdfTargetsProxy SdfRelationshipSpec::GetTargetPathList() const
{
    return SdfGetPathEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->TargetPaths);
}

bool SdfRelationshipSpec::HasTargetPathList() const { return GetTargetPathList().HasKeys(); }

void SdfRelationshipSpec::ClearTargetPathList() const { GetTargetPathList().ClearEdits(); }

void SdfRelationshipSpec::ReplaceTargetPath(const SdfPath& oldPath, const SdfPath& newPath)
{
    const SdfPath anchor = GetPath().GetPrimPath();
    GetTargetPathList().ReplaceItemEdits(oldPath.MakeAbsolutePath(anchor), newPath.MakeAbsolutePath(anchor));
}

void SdfRelationshipSpec::RemoveTargetPath(const SdfPath& path, bool preserveTargetOrder)
{
    const SdfPath target = path.MakeAbsolutePath(GetPath().GetPrimPath());
    SdfChangeBlock block;
    if (preserveTargetOrder) {
        GetTargetPathList().Erase(target);
    } else {
        GetTargetPathList().RemoveItemEdits(target);
    }
}

bool SdfRelationshipSpec::GetNoLoadHint() const { return GetFieldAs<bool>(SdfFieldKeys->NoLoadHint, false); }

void SdfRelationshipSpec::SetNoLoadHint(bool noload) { SetField(SdfFieldKeys->NoLoadHint, VtValue(noload)); }

PXR_NAMESPACE_CLOSE_SCOPE
