#include "pxr/usd/usd/schemaComposer.h"

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

const Usd_SchemaRecord* UsdSchemaRegistry::_Data::FindRecord(const TfToken& identifier) const
{
    const auto it = byIdentifier.find(identifier);
    return it == byIdentifier.end() ? nullptr : it->second;
}

const Usd_SchemaRecord* UsdSchemaRegistry::_Data::FindBase(const Usd_SchemaRecord& record) const
{
    const auto it = byTypeName.find(record.baseTypeName);
    return it == byTypeName.end() || it->second == &record ? nullptr : it->second;
}

namespace {

/// A declaration with what it leaves open taken from a weaker one of the same type.
std::shared_ptr<const Usd_SchemaProperty> _Merge(const std::shared_ptr<const Usd_SchemaProperty>& strong,
                                                 const Usd_SchemaProperty& weak)
{
    if (strong->specType != weak.specType || strong->typeName != weak.typeName ||
        (!strong->fallback.IsEmpty() && !strong->allowedTokens.empty())) {
        return strong;
    }
    auto merged = std::make_shared<Usd_SchemaProperty>(*strong);
    if (merged->fallback.IsEmpty()) {
        merged->fallback = weak.fallback;
    }
    if (merged->allowedTokens.empty()) {
        merged->allowedTokens = weak.allowedTokens;
    }
    return merged;
}

} // namespace

std::unique_ptr<UsdPrimDefinition> Usd_SchemaComposer::MakeEmpty()
{
    return std::unique_ptr<UsdPrimDefinition>(new UsdPrimDefinition);
}

std::unique_ptr<UsdPrimDefinition> Usd_SchemaComposer::Copy(const UsdPrimDefinition* definition)
{
    return definition ? std::unique_ptr<UsdPrimDefinition>(new UsdPrimDefinition(*definition)) : MakeEmpty();
}

std::unique_ptr<UsdPrimDefinition> Usd_SchemaComposer::Compose(const Usd_SchemaRecord& record) const
{
    std::unique_ptr<UsdPrimDefinition> definition = MakeEmpty();
    if (record.kind == UsdSchemaKind::SingleApplyAPI || record.kind == UsdSchemaKind::MultipleApplyAPI) {
        definition->_appliedAPISchemas.push_back(record.identifier);
    }
    for (const Usd_SchemaRecord* it = &record; it; it = _data.FindBase(*it)) {
        _AddRows(*it, TfToken(), definition.get());
    }
    AddApis(_BuiltInApis(record), definition.get());
    _ApplyOverrides(record, definition.get());
    return definition;
}

void Usd_SchemaComposer::AddApis(const TfTokenVector& apis, UsdPrimDefinition* definition) const
{
    for (const TfToken& api : apis) {
        _AddApi(api, definition);
    }
}

void Usd_SchemaComposer::_AddApi(const TfToken& api, UsdPrimDefinition* definition) const
{
    const auto [name, instanceName] = UsdSchemaRegistry::GetTypeNameAndInstance(api);
    const Usd_SchemaRecord* const record = _data.FindRecord(name);
    const bool needsInstance = record && record->kind == UsdSchemaKind::MultipleApplyAPI;
    const bool isApplicable = record && (needsInstance || record->kind == UsdSchemaKind::SingleApplyAPI);
    if (!isApplicable || needsInstance == instanceName.IsEmpty() || _HasFamily(*definition, api)) {
        return;
    }
    definition->_appliedAPISchemas.push_back(api);
    // The schema's own overrides reach only what its own built-in schemas bring.
    const std::unique_ptr<UsdPrimDefinition> before =
        record->builtInApis.empty() ? nullptr : Copy(definition);
    _AddRows(*record, instanceName, definition);
    AddApis(_BuiltInApis(*record), definition);
    if (before) {
        _ApplyOverrides(*record, definition);
        for (const auto& [propName, property] : before->_propertyMap) {
            definition->_propertyMap[propName] = property;
        }
    }
}

void Usd_SchemaComposer::_AddRows(const Usd_SchemaRecord& record, const TfToken& instanceName,
                                  UsdPrimDefinition* definition) const
{
    for (const Usd_SchemaRecord::Row& row : record.rows) {
        if (row.isOverride) {
            continue;
        }
        const TfToken name = instanceName.IsEmpty() ? row.name
                                                    : UsdSchemaRegistry::MakeMultipleApplyNameInstance(
                                                          row.name.GetString(), instanceName.GetString());
        const auto [it, isNew] = definition->_propertyMap.emplace(name, row.property);
        if (isNew) {
            definition->_properties.push_back(name);
        } else {
            it->second = _Merge(it->second, *row.property);
        }
    }
}

void Usd_SchemaComposer::_ApplyOverrides(const Usd_SchemaRecord& record, UsdPrimDefinition* definition) const
{
    // The most derived override wins, hence bases go first.
    if (const Usd_SchemaRecord* base = _data.FindBase(record)) {
        _ApplyOverrides(*base, definition);
    }
    for (const Usd_SchemaRecord::Row& row : record.rows) {
        const auto it = definition->_propertyMap.find(row.name);
        if (row.isOverride && it != definition->_propertyMap.end()) {
            it->second = _Merge(row.property, *it->second);
        }
    }
}

bool Usd_SchemaComposer::_HasFamily(const UsdPrimDefinition& definition, const TfToken& api) const
{
    const auto family = [](const TfToken& applied) {
        const auto [name, instanceName] = UsdSchemaRegistry::GetTypeNameAndInstance(applied);
        return std::make_pair(UsdSchemaRegistry::ParseSchemaFamilyAndVersionFromIdentifier(name).first,
                              instanceName);
    };
    const auto wanted = family(api);
    return std::any_of(definition._appliedAPISchemas.begin(), definition._appliedAPISchemas.end(),
                       [&](const TfToken& applied) { return family(applied) == wanted; });
}

TfTokenVector Usd_SchemaComposer::_BuiltInApis(const Usd_SchemaRecord& record) const
{
    TfTokenVector apis;
    for (const Usd_SchemaRecord* it = &record; it; it = _data.FindBase(*it)) {
        apis.insert(apis.end(), it->builtInApis.begin(), it->builtInApis.end());
    }
    for (const auto& [api, typeNames] : _data.autoApply) {
        if (std::find(typeNames.begin(), typeNames.end(), record.identifier) != typeNames.end()) {
            apis.push_back(api);
        }
    }
    return apis;
}

TfTokenVector Usd_SchemaComposer::FindAttributeNames(const std::string& typeName, bool includeInherited)
{
    const UsdSchemaRegistry::_Data& data = *UsdSchemaRegistry::GetInstance()._data;
    const auto it = data.byTypeName.find(typeName);
    return it == data.byTypeName.end() ? TfTokenVector()
                                       : _FindAttributeNames(data, *it->second, includeInherited);
}

TfTokenVector Usd_SchemaComposer::_FindAttributeNames(const UsdSchemaRegistry::_Data& data,
                                                      const Usd_SchemaRecord& record, bool includeInherited)
{
    TfTokenVector names;
    const Usd_SchemaRecord* const base = data.FindBase(record);
    if (includeInherited && base) {
        names = _FindAttributeNames(data, *base, true);
    }
    for (const Usd_SchemaRecord::Row& row : record.rows) {
        const bool isKnown = std::find(names.begin(), names.end(), row.name) != names.end();
        if (!row.isOverride && !isKnown && row.property->specType == SdfSpecTypeAttribute) {
            names.push_back(row.name);
        }
    }
    return names;
}

PXR_NAMESPACE_CLOSE_SCOPE
