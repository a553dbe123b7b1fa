#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usd/tokens.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A named set of paths on a prim, given by what it includes and excludes.
class VESK_USD_API UsdCollectionAPI : public UsdAPISchemaBase
{
public:
    static constexpr UsdSchemaKind schemaKind = UsdSchemaKind::MultipleApplyAPI;

    explicit UsdCollectionAPI(const UsdPrim& prim = UsdPrim(), const TfToken& name = TfToken())
        : UsdAPISchemaBase(prim, name)
    {}
    explicit UsdCollectionAPI(const UsdSchemaBase& schemaObj, const TfToken& name)
        : UsdAPISchemaBase(schemaObj, name)
    {}

    VESK_USD_SCHEMA_COMMON(UsdCollectionAPI)

    static TfTokenVector GetSchemaAttributeNames(bool includeInherited, const TfToken& instanceName);
    static UsdCollectionAPI Get(const UsdPrim& prim, const TfToken& name);
    static std::vector<UsdCollectionAPI> GetAll(const UsdPrim& prim);
    static std::vector<UsdCollectionAPI> GetAllCollections(const UsdPrim& prim) { return GetAll(prim); }
    static UsdCollectionAPI GetCollection(const UsdStagePtr& stage, const SdfPath& collectionPath);
    static UsdCollectionAPI GetCollection(const UsdPrim& prim, const TfToken& name)
    {
        return Get(prim, name);
    }
    static bool CanApply(const UsdPrim& prim, const TfToken& name, std::string* whyNot = nullptr);
    static UsdCollectionAPI Apply(const UsdPrim& prim, const TfToken& name);
    static bool IsSchemaPropertyBaseName(const TfToken& baseName);
    /// Whether a path is that of a collection, "/Prim.collection:name"; gives its name.
    static bool IsCollectionAPIPath(const SdfPath& path, TfToken* name);
    static bool CanContainPropertyName(const TfToken& name);
    static SdfPath GetNamedCollectionPath(const UsdPrim& prim, const TfToken& collectionName);

    TfToken GetName() const { return _GetInstanceName(); }
    SdfPath GetCollectionPath() const;

    UsdAttribute GetExpansionRuleAttr() const;
    UsdAttribute CreateExpansionRuleAttr(const VtValue& defaultValue = VtValue(),
                                         bool writeSparsely = false) const;
    UsdAttribute GetIncludeRootAttr() const;
    UsdAttribute CreateIncludeRootAttr(const VtValue& defaultValue = VtValue(),
                                       bool writeSparsely = false) const;
    UsdAttribute GetCollectionAttr() const;
    UsdRelationship GetIncludesRel() const;
    UsdRelationship CreateIncludesRel() const;
    UsdRelationship GetExcludesRel() const;
    UsdRelationship CreateExcludesRel() const;

    bool HasNoIncludedPaths() const;
    bool ResetCollection() const;
    bool BlockCollection() const;

private:
    TfToken _PropertyName(const TfToken& nameTemplate) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
