#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/relationship.h>

#include <algorithm>
#include <iterator>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Moves the names that an order mentions to the front, in that order.
void bringToFront(const TfTokenVector& order, TfTokenVector* names)
{
    auto rest = names->begin();
    for (const TfToken& name : order) {
        const auto found = std::find(rest, names->end(), name);
        if (found != names->end()) {
            std::rotate(rest, found, std::next(found));
            ++rest;
        }
    }
}

} // namespace

TfTokenVector UsdPrim::_GetPropertyNames(bool onlyAuthored, const PropertyPredicateFunc& predicate) const
{
    TfTokenVector names;
    const auto add = [&](const TfTokenVector& more) {
        std::copy_if(more.begin(), more.end(), std::back_inserter(names),
                     [&predicate](const TfToken& name) { return !predicate || predicate(name); });
    };
    if (!onlyAuthored) {
        add(GetPrimDefinition().GetPropertyNames());
    }
    for (Usd_PropertySites sites(*_Prim().operator->(), TfToken()); sites; ++sites) {
        TfTokenVector authored;
        if (sites.GetLayer().HasField(sites.GetPath(), SdfChildrenKeys->PropertyChildren, &authored)) {
            add(authored);
        }
    }
    std::sort(names.begin(), names.end(), TfDictionaryLessThan());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

TfTokenVector UsdPrim::GetPropertyNames(const PropertyPredicateFunc& predicate) const
{
    TfTokenVector names = _GetPropertyNames(false, predicate);
    bringToFront(GetPropertyOrder(), &names);
    return names;
}

TfTokenVector UsdPrim::GetAuthoredPropertyNames(const PropertyPredicateFunc& predicate) const
{
    TfTokenVector names = _GetPropertyNames(true, predicate);
    bringToFront(GetPropertyOrder(), &names);
    return names;
}

std::vector<UsdProperty> UsdPrim::GetProperties(const PropertyPredicateFunc& predicate) const
{
    std::vector<UsdProperty> properties;
    for (const TfToken& name : GetPropertyNames(predicate)) {
        properties.push_back(GetProperty(name));
    }
    return properties;
}

std::vector<UsdProperty> UsdPrim::GetAuthoredProperties(const PropertyPredicateFunc& predicate) const
{
    std::vector<UsdProperty> properties;
    for (const TfToken& name : GetAuthoredPropertyNames(predicate)) {
        properties.push_back(GetProperty(name));
    }
    return properties;
}

std::vector<UsdProperty> UsdPrim::_GetPropertiesInNamespace(const std::string& namespaces,
                                                            bool onlyAuthored) const
{
    std::string prefix = namespaces;
    if (!prefix.empty() && prefix.back() != GetNamespaceDelimiter()) {
        prefix += GetNamespaceDelimiter();
    }
    const auto isInside = [&prefix](const TfToken& name) {
        return name.GetString().size() > prefix.size() && TfStringStartsWith(name.GetString(), prefix);
    };
    return onlyAuthored ? GetAuthoredProperties(isInside) : GetProperties(isInside);
}

std::vector<UsdProperty> UsdPrim::GetPropertiesInNamespace(const std::string& namespaces) const
{
    return _GetPropertiesInNamespace(namespaces, false);
}

std::vector<UsdProperty> UsdPrim::GetPropertiesInNamespace(const std::vector<std::string>& namespaces) const
{
    return _GetPropertiesInNamespace(SdfPath::JoinIdentifier(namespaces), false);
}

std::vector<UsdProperty> UsdPrim::GetAuthoredPropertiesInNamespace(const std::string& namespaces) const
{
    return _GetPropertiesInNamespace(namespaces, true);
}

std::vector<UsdProperty>
UsdPrim::GetAuthoredPropertiesInNamespace(const std::vector<std::string>& namespaces) const
{
    return _GetPropertiesInNamespace(SdfPath::JoinIdentifier(namespaces), true);
}

TfTokenVector UsdPrim::GetPropertyOrder() const
{
    TfTokenVector order;
    GetMetadata(SdfFieldKeys->PropertyOrder, &order);
    return order;
}

void UsdPrim::SetPropertyOrder(const TfTokenVector& order) const
{
    SetMetadata(SdfFieldKeys->PropertyOrder, order);
}

void UsdPrim::ClearPropertyOrder() const { ClearMetadata(SdfFieldKeys->PropertyOrder); }

bool UsdPrim::RemoveProperty(const TfToken& propName)
{
    return Usd_SpecEditor(_Impl()).RemoveProperty(GetPath().AppendProperty(propName));
}

UsdProperty UsdPrim::GetProperty(const TfToken& propName) const
{
    const UsdProperty unknown = Usd_ObjectAccess::MakeProperty(UsdTypeProperty, *this, propName);
    if (!IsValid()) {
        return unknown;
    }
    switch (unknown._GetDefiningSpecType()) {
    case SdfSpecTypeAttribute:
        return Usd_ObjectAccess::MakeProperty(UsdTypeAttribute, *this, propName);
    case SdfSpecTypeRelationship:
        return Usd_ObjectAccess::MakeProperty(UsdTypeRelationship, *this, propName);
    default:
        return unknown;
    }
}

bool UsdPrim::HasProperty(const TfToken& propName) const { return static_cast<bool>(GetProperty(propName)); }

UsdAttribute UsdPrim::CreateAttribute(const TfToken& name, const SdfValueTypeName& typeName, bool custom,
                                      SdfVariability variability) const
{
    const UsdAttribute attribute = GetAttribute(name);
    Usd_SpecEditor(_Impl()).CreateAttributeSpec(attribute, typeName, custom, variability);
    return attribute;
}

UsdAttribute UsdPrim::CreateAttribute(const TfToken& name, const SdfValueTypeName& typeName,
                                      SdfVariability variability) const
{
    return CreateAttribute(name, typeName, true, variability);
}

UsdAttribute UsdPrim::CreateAttribute(const std::vector<std::string>& nameElts,
                                      const SdfValueTypeName& typeName, bool custom,
                                      SdfVariability variability) const
{
    return CreateAttribute(TfToken(SdfPath::JoinIdentifier(nameElts)), typeName, custom, variability);
}

UsdAttribute UsdPrim::CreateAttribute(const std::vector<std::string>& nameElts,
                                      const SdfValueTypeName& typeName, SdfVariability variability) const
{
    return CreateAttribute(nameElts, typeName, true, variability);
}

template <class PropertyType>
std::vector<PropertyType> UsdPrim::_GetPropertiesOfType(bool onlyAuthored) const
{
    std::vector<PropertyType> properties;
    for (const TfToken& name : _GetPropertyNames(onlyAuthored, {})) {
        const PropertyType property = Usd_ObjectAccess::MakeProperty<PropertyType>(*this, name);
        if (property) {
            properties.push_back(property);
        }
    }
    return properties;
}

std::vector<UsdAttribute> UsdPrim::GetAttributes() const { return _GetPropertiesOfType<UsdAttribute>(false); }

std::vector<UsdAttribute> UsdPrim::GetAuthoredAttributes() const
{
    return _GetPropertiesOfType<UsdAttribute>(true);
}

UsdAttribute UsdPrim::GetAttribute(const TfToken& attrName) const
{
    return Usd_ObjectAccess::MakeProperty<UsdAttribute>(*this, attrName);
}

bool UsdPrim::HasAttribute(const TfToken& attrName) const
{
    return static_cast<bool>(GetAttribute(attrName));
}

UsdRelationship UsdPrim::CreateRelationship(const TfToken& relName, bool custom) const
{
    const UsdRelationship relationship = GetRelationship(relName);
    Usd_SpecEditor(_Impl()).CreateRelationshipSpec(relationship, custom);
    return relationship;
}

UsdRelationship UsdPrim::CreateRelationship(const std::vector<std::string>& nameElts, bool custom) const
{
    return CreateRelationship(TfToken(SdfPath::JoinIdentifier(nameElts)), custom);
}

std::vector<UsdRelationship> UsdPrim::GetRelationships() const
{
    return _GetPropertiesOfType<UsdRelationship>(false);
}

std::vector<UsdRelationship> UsdPrim::GetAuthoredRelationships() const
{
    return _GetPropertiesOfType<UsdRelationship>(true);
}

UsdRelationship UsdPrim::GetRelationship(const TfToken& relName) const
{
    return Usd_ObjectAccess::MakeProperty<UsdRelationship>(*this, relName);
}

bool UsdPrim::HasRelationship(const TfToken& relName) const
{
    return static_cast<bool>(GetRelationship(relName));
}

PXR_NAMESPACE_CLOSE_SCOPE
