#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/common.h>

#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class UsdPrimDefinition;
class UsdSchemaBase;

using UsdSchemaVersion = unsigned int;

/// All schemas that are known: which types exist, how they derive, what prims of a type have built in.
///
/// It is filled when it is first used and never changes after that; any thread may read it.
class VESK_USD_API UsdSchemaRegistry : public TfWeakBase
{
public:
    using TokenToTokenVectorMap = std::unordered_map<TfToken, TfTokenVector, TfHash>;

    /// What a schema is called: "Capsule_1" is the identifier of version 1 of the family "Capsule".
    struct SchemaInfo
    {
        TfToken identifier;
        TfType type;
        TfToken family;
        UsdSchemaVersion version;
        UsdSchemaKind kind;
    };

    enum class VersionPolicy
    {
        All,
        GreaterThan,
        GreaterThanOrEqual,
        LessThan,
        LessThanOrEqual
    };

    static UsdSchemaRegistry& GetInstance();

    static TfToken MakeSchemaIdentifierForFamilyAndVersion(const TfToken& schemaFamily,
                                                           UsdSchemaVersion schemaVersion);
    static std::pair<TfToken, UsdSchemaVersion>
    ParseSchemaFamilyAndVersionFromIdentifier(const TfToken& schemaIdentifier);
    static bool IsAllowedSchemaFamily(const TfToken& schemaFamily);
    static bool IsAllowedSchemaIdentifier(const TfToken& schemaIdentifier);

    static const SchemaInfo* FindSchemaInfo(const TfType& schemaType);
    template <class SchemaType>
    static const SchemaInfo* FindSchemaInfo()
    {
        static_assert(std::is_base_of<UsdSchemaBase, SchemaType>::value, "a schema class is required");
        return FindSchemaInfo(SchemaType::_GetStaticTfType());
    }
    static const SchemaInfo* FindSchemaInfo(const TfToken& schemaIdentifier);
    static const SchemaInfo* FindSchemaInfo(const TfToken& schemaFamily, UsdSchemaVersion schemaVersion);
    /// All versions of a family, the newest first.
    static const std::vector<const SchemaInfo*>& FindSchemaInfosInFamily(const TfToken& schemaFamily);
    static std::vector<const SchemaInfo*> FindSchemaInfosInFamily(const TfToken& schemaFamily,
                                                                  UsdSchemaVersion schemaVersion,
                                                                  VersionPolicy versionPolicy);

    /// The identifier of a schema type; empty where it is none, or not of the kind that the name says.
    static TfToken GetSchemaTypeName(const TfType& schemaType);
    template <class SchemaType>
    static TfToken GetSchemaTypeName()
    {
        return GetSchemaTypeName(SchemaType::_GetStaticTfType());
    }
    static TfToken GetConcreteSchemaTypeName(const TfType& schemaType);
    static TfToken GetAPISchemaTypeName(const TfType& schemaType);

    /// The type of an identifier; the unknown type where there is none, or not of the kind that the name
    /// says.
    static TfType GetTypeFromSchemaTypeName(const TfToken& typeName);
    static TfType GetConcreteTypeFromSchemaTypeName(const TfToken& typeName);
    static TfType GetAPITypeFromSchemaTypeName(const TfToken& typeName);
    /// The type of an identifier or of a class name.
    static TfType GetTypeFromName(const TfToken& typeName);

    /// Whether a field cannot come from a schema: composition arcs, children, values by time.
    static bool IsDisallowedField(const TfToken& fieldName);

    static bool IsTyped(const TfType& primType);
    static UsdSchemaKind GetSchemaKind(const TfType& schemaType);
    static UsdSchemaKind GetSchemaKind(const TfToken& typeName);
    static bool IsConcrete(const TfType& primType);
    static bool IsConcrete(const TfToken& primType);
    static bool IsAbstract(const TfType& primType);
    static bool IsAbstract(const TfToken& primType);
    static bool IsAppliedAPISchema(const TfType& apiSchemaType);
    static bool IsAppliedAPISchema(const TfToken& apiSchemaType);
    static bool IsMultipleApplyAPISchema(const TfType& apiSchemaType);
    static bool IsMultipleApplyAPISchema(const TfToken& apiSchemaType);

    /// Splits "CollectionAPI:lights" into its schema and instance; the instance is empty where there is none.
    static std::pair<TfToken, TfToken> GetTypeNameAndInstance(const TfToken& apiSchemaName);
    static bool IsAllowedAPISchemaInstanceName(const TfToken& apiSchemaName, const TfToken& instanceName);
    static const TfTokenVector& GetAPISchemaCanOnlyApplyToTypeNames(const TfToken& apiSchemaName,
                                                                    const TfToken& instanceName = TfToken());
    static const TokenToTokenVectorMap& GetAutoApplyAPISchemas();

    /// Property names of multiple-apply schemas stand as templates: "collection:__INSTANCE_NAME__:includes".
    static TfToken MakeMultipleApplyNameTemplate(const std::string& namespacePrefix,
                                                 const std::string& baseName);
    static TfToken MakeMultipleApplyNameInstance(const std::string& nameTemplate,
                                                 const std::string& instanceName);
    static TfToken GetMultipleApplyNameTemplateBaseName(const std::string& nameTemplate);
    static bool IsMultipleApplyNameTemplate(const std::string& nameTemplate);

    const UsdPrimDefinition* FindConcretePrimDefinition(const TfToken& typeName) const;
    const UsdPrimDefinition* FindAppliedAPIPrimDefinition(const TfToken& typeName) const;
    const UsdPrimDefinition* GetEmptyPrimDefinition() const { return _emptyPrimDefinition.get(); }

    /// The definition of prims of a type with further API schemas applied, strongest first.
    std::unique_ptr<UsdPrimDefinition>
    BuildComposedPrimDefinition(const TfToken& primType, const TfTokenVector& appliedAPISchemas) const;

private:
    friend class UsdSchemaBase;
    friend class Usd_SchemaComposer;
    struct _Data;

    UsdSchemaRegistry();
    ~UsdSchemaRegistry();
    UsdSchemaRegistry(const UsdSchemaRegistry&) = delete;
    UsdSchemaRegistry& operator=(const UsdSchemaRegistry&) = delete;

    /// The definition that a schema class's own accessors go by, abstract schemas included.
    const UsdPrimDefinition* _FindDefinition(const TfType& schemaType) const;

    std::unique_ptr<_Data> _data;
    std::unique_ptr<UsdPrimDefinition> _emptyPrimDefinition;
};

PXR_NAMESPACE_CLOSE_SCOPE
