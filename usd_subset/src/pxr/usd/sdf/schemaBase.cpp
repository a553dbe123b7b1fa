#include <pxr/base/tf/unicodeUtils.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/sdf/variableExpression.h>

#include <algorithm>
#include <cctype>

PXR_NAMESPACE_OPEN_SCOPE

std::vector<TfToken> SdfSchemaBase::SpecDefinition::GetFields() const
{
    std::vector<TfToken> names;
    for (const auto& field : _fields) {
        names.push_back(field.first);
    }
    return names;
}

std::vector<TfToken> SdfSchemaBase::SpecDefinition::GetMetadataFields() const
{
    std::vector<TfToken> names;
    for (const auto& field : _fields) {
        if (field.second.metadata) {
            names.push_back(field.first);
        }
    }
    return names;
}

bool SdfSchemaBase::SpecDefinition::IsMetadataField(const TfToken& name) const
{
    const auto it = _fields.find(name);
    return it != _fields.end() && it->second.metadata;
}

TfToken SdfSchemaBase::SpecDefinition::GetMetadataFieldDisplayGroup(const TfToken& name) const
{
    const auto it = _fields.find(name);
    return it != _fields.end() ? it->second.displayGroup : TfToken();
}

bool SdfSchemaBase::SpecDefinition::IsRequiredField(const TfToken& name) const
{
    return std::find(_required.begin(), _required.end(), name) != _required.end();
}

SdfSchemaBase::SdfSchemaBase()
{
    _RegisterLayerFields();
    _RegisterPrimFields();
    _RegisterPropertyFields();
    _RegisterChildrenFields();
    _DefineSpecs();
    _RegisterSchemaMetadata();
}

SdfSchemaBase::~SdfSchemaBase() = default;

const SdfSchemaBase::FieldDefinition* SdfSchemaBase::GetFieldDefinition(const TfToken& fieldKey) const
{
    const auto it = _fields.find(fieldKey);
    return it == _fields.end() ? nullptr : &it->second;
}

const SdfSchemaBase::SpecDefinition* SdfSchemaBase::GetSpecDefinition(SdfSpecType specType) const
{
    const bool known = specType >= 0 && specType < SdfNumSpecTypes && _hasSpec[specType];
    return known ? &_specs[specType] : nullptr;
}

bool SdfSchemaBase::IsRegistered(const TfToken& fieldKey, VtValue* fallback) const
{
    const FieldDefinition* definition = GetFieldDefinition(fieldKey);
    if (definition && fallback) {
        *fallback = definition->GetFallbackValue();
    }
    return definition != nullptr;
}

bool SdfSchemaBase::HoldsChildren(const TfToken& fieldKey) const
{
    const FieldDefinition* definition = GetFieldDefinition(fieldKey);
    return definition && definition->HoldsChildren();
}

const VtValue& SdfSchemaBase::GetFallback(const TfToken& fieldKey) const
{
    static const VtValue empty;
    const FieldDefinition* definition = GetFieldDefinition(fieldKey);
    return definition ? definition->GetFallbackValue() : empty;
}

bool SdfSchemaBase::IsValidFieldForSpec(const TfToken& fieldKey, SdfSpecType specType) const
{
    const SpecDefinition* definition = GetSpecDefinition(specType);
    return definition && definition->IsValidField(fieldKey);
}

std::vector<TfToken> SdfSchemaBase::GetFields(SdfSpecType specType) const
{
    const SpecDefinition* definition = GetSpecDefinition(specType);
    return definition ? definition->GetFields() : std::vector<TfToken>();
}

std::vector<TfToken> SdfSchemaBase::GetMetadataFields(SdfSpecType specType) const
{
    const SpecDefinition* definition = GetSpecDefinition(specType);
    return definition ? definition->GetMetadataFields() : std::vector<TfToken>();
}

TfToken SdfSchemaBase::GetMetadataFieldDisplayGroup(SdfSpecType specType, const TfToken& metadataField) const
{
    const SpecDefinition* definition = GetSpecDefinition(specType);
    return definition ? definition->GetMetadataFieldDisplayGroup(metadataField) : TfToken();
}

const std::vector<TfToken>& SdfSchemaBase::GetRequiredFields(SdfSpecType specType) const
{
    static const std::vector<TfToken> none;
    const SpecDefinition* definition = GetSpecDefinition(specType);
    return definition ? definition->GetRequiredFields() : none;
}

bool SdfSchemaBase::IsRequiredFieldName(const TfToken& fieldName) const
{
    return fieldName == SdfFieldKeys->Specifier || fieldName == SdfFieldKeys->Custom ||
           fieldName == SdfFieldKeys->Variability || fieldName == SdfFieldKeys->TypeName;
}

SdfAllowed SdfSchemaBase::IsValidIdentifier(const std::string& name)
{
    return SdfAllowed(SdfPath::IsValidIdentifier(name), "\"" + name + "\" is not a valid identifier");
}

SdfAllowed SdfSchemaBase::IsValidNamespacedIdentifier(const std::string& name)
{
    return SdfAllowed(SdfPath::IsValidNamespacedIdentifier(name),
                      "\"" + name + "\" is not a valid namespaced identifier");
}

SdfAllowed SdfSchemaBase::IsValidVariantIdentifier(const std::string& name)
{
    // An optional dot, then what identifiers go on with, bars and dashes.
    const char* at = name.data();
    const char* const end = at + name.size();
    at += at != end && *at == '.' ? 1 : 0;
    bool valid = true;
    while (valid && at != end) {
        const uint32_t code = Tf_NextCodePoint(&at, end);
        valid = code == '|' || code == '-' || TfIsUtf8CodePointXidContinue(code);
    }
    return SdfAllowed(valid, "\"" + name + "\" is not a valid variant name");
}

SdfAllowed SdfSchemaBase::IsValidVariantSelection(const std::string& selection)
{
    return SdfVariableExpression::IsExpression(selection) ? SdfAllowed(true)
                                                          : IsValidVariantIdentifier(selection);
}

SdfAllowed SdfSchemaBase::IsValidValue(const VtValue& value) const
{
    const bool held = value.IsEmpty() || value.IsHolding<SdfValueBlock>() ||
                      value.IsHolding<VtDictionary>() ||
                      static_cast<bool>(SdfGetValueTypeNameForValue(value));
    return SdfAllowed(held,
                      "A value of type " + value.GetTypeName() + " cannot be held in scene description");
}

PXR_NAMESPACE_CLOSE_SCOPE
