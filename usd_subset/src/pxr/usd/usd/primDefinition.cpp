#include <pxr/usd/usd/primDefinition.h>

#include "pxr/usd/usd/schemaTable.h"

#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// Reads one field of a property, the value fields included.
bool _ReadField(const Usd_SchemaProperty& property, const TfToken& field, VtValue* value)
{
    const bool isAttribute = property.specType == SdfSpecTypeAttribute;
    VtValue found;
    if (field == SdfFieldKeys->Default) {
        found = property.fallback;
    } else if (field == SdfFieldKeys->TypeName && isAttribute) {
        found = property.typeName.GetAsToken();
    } else if (field == SdfFieldKeys->Variability) {
        found = property.variability;
    } else if (field == SdfFieldKeys->Custom) {
        found = false;
    } else if (field == SdfFieldKeys->AllowedTokens && !property.allowedTokens.empty()) {
        found = property.allowedTokens;
    }
    if (found.IsEmpty()) {
        return false;
    }
    if (value) {
        value->Swap(found);
    }
    return true;
}

} // namespace

SdfSpecType UsdPrimDefinition::Property::GetSpecType() const
{
    return _property ? _property->specType : SdfSpecTypeUnknown;
}

SdfVariability UsdPrimDefinition::Property::GetVariability() const
{
    return _property ? _property->variability : SdfVariabilityVarying;
}

TfTokenVector UsdPrimDefinition::Property::ListMetadataFields() const
{
    TfTokenVector fields;
    for (const TfToken& field : {SdfFieldKeys->AllowedTokens, SdfFieldKeys->Custom, SdfFieldKeys->Default,
                                 SdfFieldKeys->TypeName, SdfFieldKeys->Variability}) {
        if (_property && _ReadField(*_property, field, nullptr)) {
            fields.push_back(field);
        }
    }
    return fields;
}

bool UsdPrimDefinition::Property::_GetField(const TfToken& key, VtValue* value) const
{
    return _property && _ReadField(*_property, key, value);
}

UsdPrimDefinition::Attribute::Attribute(const Property& property)
    : Property(property.IsAttribute() ? property : Property())
{}

SdfValueTypeName UsdPrimDefinition::Attribute::GetTypeName() const
{
    return _property ? _property->typeName : SdfValueTypeName();
}

TfToken UsdPrimDefinition::Attribute::GetTypeNameToken() const { return GetTypeName().GetAsToken(); }

bool UsdPrimDefinition::Attribute::_GetFallback(VtValue* value) const
{
    return _GetField(SdfFieldKeys->Default, value);
}

UsdPrimDefinition::Relationship::Relationship(const Property& property)
    : Property(property.IsRelationship() ? property : Property())
{}

UsdPrimDefinition::Property UsdPrimDefinition::GetPropertyDefinition(const TfToken& propName) const
{
    const auto it = _propertyMap.find(propName);
    return it == _propertyMap.end() ? Property() : Property(propName, it->second.get());
}

UsdPrimDefinition::Attribute UsdPrimDefinition::GetAttributeDefinition(const TfToken& attrName) const
{
    return GetPropertyDefinition(attrName);
}

UsdPrimDefinition::Relationship UsdPrimDefinition::GetRelationshipDefinition(const TfToken& relName) const
{
    return GetPropertyDefinition(relName);
}

SdfSpecType UsdPrimDefinition::GetSpecType(const TfToken& propName) const
{
    return GetPropertyDefinition(propName).GetSpecType();
}

TfTokenVector UsdPrimDefinition::ListPropertyMetadataFields(const TfToken& propName) const
{
    return GetPropertyDefinition(propName).ListMetadataFields();
}

bool Usd_GetFallbackValue(const UsdPrimDefinition& primDef, const TfToken& propName, const TfToken& fieldName,
                          const TfToken& keyPath, VtValue* value)
{
    const auto it = primDef._propertyMap.find(propName);
    return keyPath.IsEmpty() && it != primDef._propertyMap.end() && _ReadField(*it->second, fieldName, value);
}

PXR_NAMESPACE_CLOSE_SCOPE
