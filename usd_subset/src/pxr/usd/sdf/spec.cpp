#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/pseudoRootSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/spec.h>
#include <pxr/usd/sdf/variantSetSpec.h>
#include <pxr/usd/sdf/variantSpec.h>

PXR_NAMESPACE_OPEN_SCOPE

void Sdf_PostInvalidHandleError(const std::type_info& specType)
{
    TF_CODING_ERROR("Dereferenced an invalid handle to a spec of type %s", specType.name());
}

bool Sdf_CanCastToType(const SdfSpec& srcSpec, const std::type_info& destType)
{
    const SdfSpecType type = srcSpec.GetSpecType();
    if (type == SdfSpecTypeUnknown) {
        return false;
    }
    if (destType == typeid(SdfSpec)) {
        return true;
    }
    const bool isProperty = type == SdfSpecTypeAttribute || type == SdfSpecTypeRelationship;
    return (destType == typeid(SdfPropertySpec) && isProperty) ||
           (destType == typeid(SdfAttributeSpec) && type == SdfSpecTypeAttribute) ||
           (destType == typeid(SdfRelationshipSpec) && type == SdfSpecTypeRelationship) ||
           (destType == typeid(SdfPseudoRootSpec) && type == SdfSpecTypePseudoRoot) ||
           (destType == typeid(SdfVariantSetSpec) && type == SdfSpecTypeVariantSet) ||
           (destType == typeid(SdfVariantSpec) && type == SdfSpecTypeVariant) ||
           (destType == typeid(SdfPrimSpec) &&
            (type == SdfSpecTypePrim || type == SdfSpecTypePseudoRoot || type == SdfSpecTypeVariant));
}

SdfSpec::~SdfSpec() = default;

const SdfSchemaBase& SdfSpec::GetSchema() const { return SdfSchema::GetInstance(); }

SdfSpecType SdfSpec::GetSpecType() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetSpecType(_id->GetPath()) : SdfSpecTypeUnknown;
}

bool SdfSpec::IsDormant() const
{
    const SdfLayerHandle layer = GetLayer();
    return !layer || !layer->HasSpec(_id->GetPath());
}

SdfLayerHandle SdfSpec::GetLayer() const { return _id ? _id->GetLayer() : SdfLayerHandle(); }

SdfPath SdfSpec::GetPath() const { return _id ? _id->GetPath() : SdfPath(); }

bool SdfSpec::PermissionToEdit() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->PermissionToEdit();
}

std::vector<TfToken> SdfSpec::ListInfoKeys() const
{
    std::vector<TfToken> keys;
    for (const TfToken& field : ListFields()) {
        const SdfSchemaBase::FieldDefinition* definition = GetSchema().GetFieldDefinition(field);
        if (!definition || (!definition->IsReadOnly() && !definition->HoldsChildren())) {
            keys.push_back(field);
        }
    }
    return keys;
}

std::vector<TfToken> SdfSpec::GetMetaDataInfoKeys() const
{
    return GetSchema().GetMetadataFields(GetSpecType());
}

TfToken SdfSpec::GetMetaDataDisplayGroup(TfToken const& key) const
{
    return GetSchema().GetMetadataFieldDisplayGroup(GetSpecType(), key);
}

VtValue SdfSpec::GetInfo(const TfToken& key) const
{
    const VtValue value = GetField(key);
    return value.IsEmpty() ? GetSchema().GetFallback(key) : value;
}

void SdfSpec::SetInfo(const TfToken& key, const VtValue& value)
{
    if (!PermissionToEdit()) {
        TF_CODING_ERROR("Cannot set %s on <%s>: permission denied.", key.GetText(), GetPath().GetText());
        return;
    }
    const SdfSchemaBase::FieldDefinition* definition = GetSchema().GetFieldDefinition(key);
    if (definition && (definition->IsReadOnly() || definition->HoldsChildren())) {
        TF_CODING_ERROR("Cannot set read-only field %s on <%s>", key.GetText(), GetPath().GetText());
        return;
    }
    // The attribute's own type decides what a default may be; every other field has the type of its fallback.
    const VtValue& fallback = GetSchema().GetFallback(key);
    VtValue cast = value;
    if (!fallback.IsEmpty() && value.GetTypeid() != fallback.GetTypeid()) {
        cast = VtValue::CastToTypeOf(value, fallback);
    }
    if (cast.IsEmpty() && !value.IsEmpty()) {
        TF_CODING_ERROR("Can't set %s on <%s>: expected a value of type %s, got one of type %s",
                        key.GetText(), GetPath().GetText(), fallback.GetTypeName().c_str(),
                        value.GetTypeName().c_str());
        return;
    }
    const SdfAllowed allowed = definition ? definition->IsValidValue(cast) : SdfAllowed();
    if (!allowed) {
        TF_CODING_ERROR("Can't set %s on <%s>: %s", key.GetText(), GetPath().GetText(),
                        allowed.GetWhyNot().c_str());
        return;
    }
    SetField(key, cast);
}

void SdfSpec::SetInfoDictionaryValue(const TfToken& dictionaryKey, const TfToken& entryKey,
                                     const VtValue& value)
{
    if (const SdfLayerHandle layer = GetLayer()) {
        VtDictionary dictionary = GetFieldAs<VtDictionary>(dictionaryKey);
        if (value.IsEmpty()) {
            dictionary.erase(entryKey.GetString());
        } else {
            dictionary[entryKey.GetString()] = value;
        }
        SetField(dictionaryKey, dictionary.empty() ? VtValue() : VtValue(dictionary));
    }
}

bool SdfSpec::HasInfo(const TfToken& key) const { return HasField(key); }

void SdfSpec::ClearInfo(const TfToken& key) { ClearField(key); }

const VtValue& SdfSpec::GetFallbackForInfo(const TfToken& key) const { return GetSchema().GetFallback(key); }

bool SdfSpec::WriteToStream(std::ostream& out, size_t indent) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->GetFileFormat()->WriteToStream(SdfSpecHandle(*this), out, indent);
}

bool SdfSpec::IsInert(bool ignoreChildren) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->_IsInert(GetPath(), ignoreChildren);
}

std::vector<TfToken> SdfSpec::ListFields() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->ListFields(_id->GetPath()) : std::vector<TfToken>();
}

bool SdfSpec::HasField(const TfToken& name) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer && layer->HasField(_id->GetPath(), name);
}

VtValue SdfSpec::GetField(const TfToken& name) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetField(_id->GetPath(), name) : VtValue();
}

bool SdfSpec::SetField(const TfToken& name, const VtValue& value)
{
    const SdfLayerHandle layer = GetLayer();
    if (!layer || !layer->HasSpec(_id->GetPath())) {
        TF_CODING_ERROR("Cannot set %s: the spec is gone", name.GetText());
        return false;
    }
    layer->SetField(_id->GetPath(), name, value);
    return layer->PermissionToEdit();
}

bool SdfSpec::ClearField(const TfToken& name)
{
    const SdfLayerHandle layer = GetLayer();
    if (!layer) {
        return false;
    }
    layer->EraseField(_id->GetPath(), name);
    return layer->PermissionToEdit();
}

PXR_NAMESPACE_CLOSE_SCOPE
