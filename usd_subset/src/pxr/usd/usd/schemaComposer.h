#pragma once

#include "pxr/usd/usd/schemaTable.h"

#include <pxr/base/tf/type.h>
#include <pxr/usd/usd/primDefinition.h>
#include <pxr/usd/usd/schemaRegistry.h>

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// All schemas by what they are looked up by.
struct UsdSchemaRegistry::_Data
{
    using DefinitionMap = std::unordered_map<TfToken, std::unique_ptr<UsdPrimDefinition>, TfHash>;

    const Usd_SchemaRecord* FindRecord(const TfToken& identifier) const;
    const Usd_SchemaRecord* FindBase(const Usd_SchemaRecord& record) const;

    std::vector<Usd_SchemaRecord> records;
    std::unordered_map<std::string, const Usd_SchemaRecord*> byTypeName;
    std::unordered_map<TfToken, const Usd_SchemaRecord*, TfHash> byIdentifier;
    std::unordered_map<TfType, SchemaInfo, TfHash> infoByType;
    std::unordered_map<TfToken, const SchemaInfo*, TfHash> infoByIdentifier;
    std::unordered_map<TfToken, std::vector<const SchemaInfo*>, TfHash> families;
    TokenToTokenVectorMap autoApply;
    DefinitionMap definitions;
};

/// Puts definitions together: a type's own and inherited properties, then those of API schemas, which are
/// weaker.
class Usd_SchemaComposer
{
public:
    explicit Usd_SchemaComposer(const UsdSchemaRegistry::_Data& data) : _data(data) {}

    static std::unique_ptr<UsdPrimDefinition> MakeEmpty();
    static std::unique_ptr<UsdPrimDefinition> Copy(const UsdPrimDefinition* definition);
    std::unique_ptr<UsdPrimDefinition> Compose(const Usd_SchemaRecord& record) const;

    /// Adds API schemas, each with its built-in ones; a family that the definition has in another version is
    /// left out.
    void AddApis(const TfTokenVector& apis, UsdPrimDefinition* definition) const;

    /// The attributes that a schema class declares, without those of API schemas.
    static TfTokenVector FindAttributeNames(const std::string& typeName, bool includeInherited);

private:
    static TfTokenVector _FindAttributeNames(const UsdSchemaRegistry::_Data& data,
                                             const Usd_SchemaRecord& record, bool includeInherited);
    void _AddApi(const TfToken& api, UsdPrimDefinition* definition) const;
    void _AddRows(const Usd_SchemaRecord& record, const TfToken& instanceName,
                  UsdPrimDefinition* definition) const;
    void _ApplyOverrides(const Usd_SchemaRecord& record, UsdPrimDefinition* definition) const;
    bool _HasFamily(const UsdPrimDefinition& definition, const TfToken& api) const;
    TfTokenVector _BuiltInApis(const Usd_SchemaRecord& record) const;

    const UsdSchemaRegistry::_Data& _data;
};

PXR_NAMESPACE_CLOSE_SCOPE
