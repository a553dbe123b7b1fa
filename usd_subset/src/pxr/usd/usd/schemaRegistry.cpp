#include <pxr/usd/usd/schemaRegistry.h>

#include "pxr/usd/usd/schemaComposer.h"
#include "pxr/usd/usd/schemaDefine.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/schemaBase.h>
#include <pxr/usd/usd/typed.h>

#include <algorithm>
#include <cctype>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr char kInstancePart[] = "__INSTANCE_NAME__";

/// The position of the "_" before a version number without leading zeros; npos where there is none.
size_t _FindVersionDelimiter(const std::string& identifier)
{
    size_t digits = identifier.size();
    while (digits > 0 && std::isdigit(static_cast<unsigned char>(identifier[digits - 1]))) {
        --digits;
    }
    if (digits == identifier.size() || digits < 2 || identifier[digits - 1] != '_' ||
        identifier[digits] == '0') {
        return std::string::npos;
    }
    return digits - 1;
}

bool _IsApi(UsdSchemaKind kind)
{
    return kind == UsdSchemaKind::NonAppliedAPI || kind == UsdSchemaKind::SingleApplyAPI ||
           kind == UsdSchemaKind::MultipleApplyAPI;
}

/// Finds the type of a schema, or declares one where no class of this library stands for it.
TfType _EnsureType(const std::string& typeName,
                   const std::unordered_map<std::string, const Usd_SchemaRecord*>& byName)
{
    const TfType known = TfType::FindByName(typeName);
    const auto it = byName.find(typeName);
    if (!known.IsUnknown() || it == byName.end()) {
        return known;
    }
    return TfType::Declare(typeName, {_EnsureType(it->second->baseTypeName, byName)});
}

} // namespace

UsdSchemaRegistry& UsdSchemaRegistry::GetInstance()
{
    static UsdSchemaRegistry* const registry = new UsdSchemaRegistry;
    return *registry;
}

UsdSchemaRegistry::UsdSchemaRegistry()
    : _data(std::make_unique<_Data>()), _emptyPrimDefinition(Usd_SchemaComposer::MakeEmpty())
{
    _data->records = Usd_SchemaTable::ParseAll();
    for (const Usd_SchemaRecord& record : _data->records) {
        _data->byTypeName.emplace(record.typeName, &record);
        _data->byIdentifier.emplace(record.identifier, &record);
        if (!record.autoApplyTo.empty()) {
            _data->autoApply.emplace(record.identifier, record.autoApplyTo);
        }
    }
    for (const Usd_SchemaRecord& record : _data->records) {
        const TfType type = _EnsureType(record.typeName, _data->byTypeName);
        type.AddAlias(TfType::Find<UsdSchemaBase>(), record.identifier.GetString());
        const auto [family, version] = ParseSchemaFamilyAndVersionFromIdentifier(record.identifier);
        const SchemaInfo& info =
            _data->infoByType.emplace(type, SchemaInfo{record.identifier, type, family, version, record.kind})
                .first->second;
        _data->infoByIdentifier.emplace(record.identifier, &info);
        _data->families[family].push_back(&info);
    }
    for (auto& [family, infos] : _data->families) {
        std::sort(infos.begin(), infos.end(),
                  [](const SchemaInfo* lhs, const SchemaInfo* rhs) { return lhs->version > rhs->version; });
    }
    const Usd_SchemaComposer composer(*_data);
    for (const Usd_SchemaRecord& record : _data->records) {
        _data->definitions.emplace(record.identifier, composer.Compose(record));
    }
}

UsdSchemaRegistry::~UsdSchemaRegistry() = default;

TfToken UsdSchemaRegistry::MakeSchemaIdentifierForFamilyAndVersion(const TfToken& schemaFamily,
                                                                   UsdSchemaVersion schemaVersion)
{
    return schemaVersion == 0 ? schemaFamily
                              : TfToken(schemaFamily.GetString() + "_" + std::to_string(schemaVersion));
}

std::pair<TfToken, UsdSchemaVersion>
UsdSchemaRegistry::ParseSchemaFamilyAndVersionFromIdentifier(const TfToken& schemaIdentifier)
{
    const std::string& text = schemaIdentifier.GetString();
    const size_t at = _FindVersionDelimiter(text);
    if (at == std::string::npos) {
        return {schemaIdentifier, 0};
    }
    return {TfToken(text.substr(0, at)),
            static_cast<UsdSchemaVersion>(std::strtoul(text.c_str() + at + 1, nullptr, 10))};
}

bool UsdSchemaRegistry::IsAllowedSchemaFamily(const TfToken& schemaFamily)
{
    return TfIsValidIdentifier(schemaFamily.GetString()) &&
           _FindVersionDelimiter(schemaFamily.GetString()) == std::string::npos;
}

bool UsdSchemaRegistry::IsAllowedSchemaIdentifier(const TfToken& schemaIdentifier)
{
    const auto [family, version] = ParseSchemaFamilyAndVersionFromIdentifier(schemaIdentifier);
    return IsAllowedSchemaFamily(family) &&
           MakeSchemaIdentifierForFamilyAndVersion(family, version) == schemaIdentifier;
}

const UsdSchemaRegistry::SchemaInfo* UsdSchemaRegistry::FindSchemaInfo(const TfType& schemaType)
{
    const auto& infos = GetInstance()._data->infoByType;
    const auto it = infos.find(schemaType);
    return it == infos.end() ? nullptr : &it->second;
}

const UsdSchemaRegistry::SchemaInfo* UsdSchemaRegistry::FindSchemaInfo(const TfToken& schemaIdentifier)
{
    const auto& infos = GetInstance()._data->infoByIdentifier;
    const auto it = infos.find(schemaIdentifier);
    return it == infos.end() ? nullptr : it->second;
}

const UsdSchemaRegistry::SchemaInfo* UsdSchemaRegistry::FindSchemaInfo(const TfToken& schemaFamily,
                                                                       UsdSchemaVersion schemaVersion)
{
    return IsAllowedSchemaFamily(schemaFamily)
               ? FindSchemaInfo(MakeSchemaIdentifierForFamilyAndVersion(schemaFamily, schemaVersion))
               : nullptr;
}

const std::vector<const UsdSchemaRegistry::SchemaInfo*>&
UsdSchemaRegistry::FindSchemaInfosInFamily(const TfToken& schemaFamily)
{
    static const std::vector<const SchemaInfo*> none;
    const auto& families = GetInstance()._data->families;
    const auto it = families.find(schemaFamily);
    return it == families.end() ? none : it->second;
}

std::vector<const UsdSchemaRegistry::SchemaInfo*>
UsdSchemaRegistry::FindSchemaInfosInFamily(const TfToken& schemaFamily, UsdSchemaVersion schemaVersion,
                                           VersionPolicy versionPolicy)
{
    std::vector<const SchemaInfo*> result;
    for (const SchemaInfo* info : FindSchemaInfosInFamily(schemaFamily)) {
        const bool isGreater = info->version > schemaVersion;
        const bool isEqual = info->version == schemaVersion;
        const bool wanted =
            versionPolicy == VersionPolicy::All ||
            (isEqual && (versionPolicy == VersionPolicy::GreaterThanOrEqual ||
                         versionPolicy == VersionPolicy::LessThanOrEqual)) ||
            (isGreater && (versionPolicy == VersionPolicy::GreaterThan ||
                           versionPolicy == VersionPolicy::GreaterThanOrEqual)) ||
            (!isGreater && !isEqual &&
             (versionPolicy == VersionPolicy::LessThan || versionPolicy == VersionPolicy::LessThanOrEqual));
        if (wanted) {
            result.push_back(info);
        }
    }
    return result;
}

TfToken UsdSchemaRegistry::GetSchemaTypeName(const TfType& schemaType)
{
    const SchemaInfo* const info = FindSchemaInfo(schemaType);
    return info ? info->identifier : TfToken();
}

TfToken UsdSchemaRegistry::GetConcreteSchemaTypeName(const TfType& schemaType)
{
    const SchemaInfo* const info = FindSchemaInfo(schemaType);
    return info && info->kind == UsdSchemaKind::ConcreteTyped ? info->identifier : TfToken();
}

TfToken UsdSchemaRegistry::GetAPISchemaTypeName(const TfType& schemaType)
{
    const SchemaInfo* const info = FindSchemaInfo(schemaType);
    return info && _IsApi(info->kind) ? info->identifier : TfToken();
}

TfType UsdSchemaRegistry::GetTypeFromSchemaTypeName(const TfToken& typeName)
{
    const SchemaInfo* const info = FindSchemaInfo(typeName);
    return info ? info->type : TfType();
}

TfType UsdSchemaRegistry::GetConcreteTypeFromSchemaTypeName(const TfToken& typeName)
{
    const SchemaInfo* const info = FindSchemaInfo(typeName);
    return info && info->kind == UsdSchemaKind::ConcreteTyped ? info->type : TfType();
}

TfType UsdSchemaRegistry::GetAPITypeFromSchemaTypeName(const TfToken& typeName)
{
    const SchemaInfo* const info = FindSchemaInfo(typeName);
    return info && _IsApi(info->kind) ? info->type : TfType();
}

TfType UsdSchemaRegistry::GetTypeFromName(const TfToken& typeName)
{
    GetInstance();
    return TfType::Find<UsdSchemaBase>().FindDerivedByName(typeName.GetString());
}

bool UsdSchemaRegistry::IsDisallowedField(const TfToken& fieldName)
{
    static const std::set<TfToken> disallowed = [] {
        std::set<TfToken> fields = {SdfFieldKeys->InheritPaths,     SdfFieldKeys->Payload,
                                    SdfFieldKeys->References,       SdfFieldKeys->Specializes,
                                    SdfFieldKeys->VariantSelection, SdfFieldKeys->VariantSetNames,
                                    SdfFieldKeys->CustomData,       SdfFieldKeys->Active,
                                    SdfFieldKeys->Instanceable,     SdfFieldKeys->TimeSamples,
                                    SdfFieldKeys->ConnectionPaths,  SdfFieldKeys->TargetPaths,
                                    SdfFieldKeys->Specifier,        SdfFieldKeys->Kind};
        for (const char* name : {"spline", "clips", "clipSets", "connectionChildren", "expressionChildren",
                                 "mapperArgChildren", "mapperChildren", "primChildren", "properties",
                                 "targetChildren", "variantChildren", "variantSetChildren"}) {
            fields.insert(TfToken(name));
        }
        return fields;
    }();
    return disallowed.count(fieldName) > 0;
}

bool UsdSchemaRegistry::IsTyped(const TfType& primType) { return primType.IsA<UsdTyped>(); }

UsdSchemaKind UsdSchemaRegistry::GetSchemaKind(const TfType& schemaType)
{
    const SchemaInfo* const info = FindSchemaInfo(schemaType);
    return info ? info->kind : UsdSchemaKind::Invalid;
}

UsdSchemaKind UsdSchemaRegistry::GetSchemaKind(const TfToken& typeName)
{
    const SchemaInfo* const info = FindSchemaInfo(typeName);
    return info ? info->kind : UsdSchemaKind::Invalid;
}

// The six questions, each for a type and for a name.
#define USD_SCHEMA_KIND_QUESTION(Name, test)                                                                 \
    bool UsdSchemaRegistry::Name(const TfType& schema)                                                       \
    {                                                                                                        \
        const UsdSchemaKind kind = GetSchemaKind(schema);                                                    \
        return test;                                                                                         \
    }                                                                                                        \
    bool UsdSchemaRegistry::Name(const TfToken& schema)                                                      \
    {                                                                                                        \
        const UsdSchemaKind kind = GetSchemaKind(schema);                                                    \
        return test;                                                                                         \
    }
USD_SCHEMA_KIND_QUESTION(IsConcrete, kind == UsdSchemaKind::ConcreteTyped)
USD_SCHEMA_KIND_QUESTION(IsAbstract,
                         kind == UsdSchemaKind::AbstractTyped || kind == UsdSchemaKind::AbstractBase)
USD_SCHEMA_KIND_QUESTION(IsAppliedAPISchema,
                         kind == UsdSchemaKind::SingleApplyAPI || kind == UsdSchemaKind::MultipleApplyAPI)
USD_SCHEMA_KIND_QUESTION(IsMultipleApplyAPISchema, kind == UsdSchemaKind::MultipleApplyAPI)
#undef USD_SCHEMA_KIND_QUESTION

std::pair<TfToken, TfToken> UsdSchemaRegistry::GetTypeNameAndInstance(const TfToken& apiSchemaName)
{
    const std::string& text = apiSchemaName.GetString();
    const size_t colon = text.find(':');
    if (colon == std::string::npos) {
        return {apiSchemaName, TfToken()};
    }
    return {TfToken(text.substr(0, colon)), TfToken(text.substr(colon + 1))};
}

bool UsdSchemaRegistry::IsAllowedAPISchemaInstanceName(const TfToken& apiSchemaName,
                                                       const TfToken& instanceName)
{
    const UsdPrimDefinition* const definition = GetInstance().FindAppliedAPIPrimDefinition(apiSchemaName);
    if (instanceName.IsEmpty() || !definition || !IsMultipleApplyAPISchema(apiSchemaName)) {
        return false;
    }
    // A name that a property of the schema has would make two readings of one property name possible.
    for (const TfToken& propName : definition->GetPropertyNames()) {
        if (GetMultipleApplyNameTemplateBaseName(propName.GetString()) == instanceName) {
            return false;
        }
    }
    return true;
}

const TfTokenVector& UsdSchemaRegistry::GetAPISchemaCanOnlyApplyToTypeNames(const TfToken& apiSchemaName,
                                                                            const TfToken&)
{
    static const TfTokenVector none;
    const Usd_SchemaRecord* const record = GetInstance()._data->FindRecord(apiSchemaName);
    return record ? record->canOnlyApplyTo : none;
}

const UsdSchemaRegistry::TokenToTokenVectorMap& UsdSchemaRegistry::GetAutoApplyAPISchemas()
{
    return GetInstance()._data->autoApply;
}

TfToken UsdSchemaRegistry::MakeMultipleApplyNameTemplate(const std::string& namespacePrefix,
                                                         const std::string& baseName)
{
    std::string name = namespacePrefix + ":" + kInstancePart;
    return TfToken(baseName.empty() ? name : name + ":" + baseName);
}

TfToken UsdSchemaRegistry::MakeMultipleApplyNameInstance(const std::string& nameTemplate,
                                                         const std::string& instanceName)
{
    const size_t at = nameTemplate.find(kInstancePart);
    std::string name = nameTemplate;
    if (at != std::string::npos) {
        name.replace(at, sizeof(kInstancePart) - 1, instanceName);
    }
    return TfToken(name);
}

TfToken UsdSchemaRegistry::GetMultipleApplyNameTemplateBaseName(const std::string& nameTemplate)
{
    const size_t at = nameTemplate.find(kInstancePart);
    if (at == std::string::npos) {
        return TfToken(nameTemplate);
    }
    const size_t base = at + sizeof(kInstancePart);
    return base < nameTemplate.size() ? TfToken(nameTemplate.substr(base)) : TfToken();
}

bool UsdSchemaRegistry::IsMultipleApplyNameTemplate(const std::string& nameTemplate)
{
    return nameTemplate.find(kInstancePart) != std::string::npos;
}

const UsdPrimDefinition* UsdSchemaRegistry::FindConcretePrimDefinition(const TfToken& typeName) const
{
    const auto it = _data->definitions.find(typeName);
    return it != _data->definitions.end() && IsConcrete(typeName) ? it->second.get() : nullptr;
}

const UsdPrimDefinition* UsdSchemaRegistry::FindAppliedAPIPrimDefinition(const TfToken& typeName) const
{
    const auto it = _data->definitions.find(typeName);
    return it != _data->definitions.end() && IsAppliedAPISchema(typeName) ? it->second.get() : nullptr;
}

std::unique_ptr<UsdPrimDefinition>
UsdSchemaRegistry::BuildComposedPrimDefinition(const TfToken& primType,
                                               const TfTokenVector& appliedAPISchemas) const
{
    std::unique_ptr<UsdPrimDefinition> definition =
        Usd_SchemaComposer::Copy(FindConcretePrimDefinition(primType));
    Usd_SchemaComposer(*_data).AddApis(appliedAPISchemas, definition.get());
    return definition;
}

const UsdPrimDefinition* UsdSchemaRegistry::_FindDefinition(const TfType& schemaType) const
{
    const auto it = _data->definitions.find(GetSchemaTypeName(schemaType));
    return it == _data->definitions.end() ? nullptr : it->second.get();
}

TfTokenVector Usd_FindSchemaAttributeNames(const TfType& type, bool includeInherited)
{
    UsdSchemaRegistry::GetInstance();
    return Usd_SchemaComposer::FindAttributeNames(type.GetTypeName(), includeInherited);
}

PXR_NAMESPACE_CLOSE_SCOPE
