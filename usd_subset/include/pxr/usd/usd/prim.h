#pragma once

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/token.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/object.h>
#include <pxr/usd/usd/primCursor.h>
#include <pxr/usd/usd/primFlags.h>
#include <pxr/usd/usd/schemaRegistry.h>

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfPayload;
class UsdEditTarget;
class UsdInherits;
class UsdPayloads;
class UsdPrimSiblingRange;
class UsdPrimSubtreeRange;
class UsdReferences;
class UsdSchemaBase;
class UsdSpecializes;
class UsdVariantSet;
class UsdVariantSets;

/// A prim of a stage: a light handle that turns false when the prim goes.
///
/// Thread: any, while nobody edits the stage.
class VESK_USD_API UsdPrim : public UsdObject
{
public:
    typedef UsdPrimSiblingRange SiblingRange;
    typedef UsdPrimSubtreeRange SubtreeRange;
    using PropertyPredicateFunc = std::function<bool(const TfToken& propertyName)>;

    UsdPrim() : UsdObject(UsdTypePrim) {}

    const UsdPrimTypeInfo& GetPrimTypeInfo() const { return _Prim()->GetPrimTypeInfo(); }
    const UsdPrimDefinition& GetPrimDefinition() const { return _Prim()->GetPrimDefinition(); }

    /// The specs that hold opinions, strongest first.
    SdfPrimSpecHandleVector GetPrimStack() const;
    std::vector<std::pair<SdfPrimSpecHandle, SdfLayerOffset>> GetPrimStackWithLayerOffsets() const;

    SdfSpecifier GetSpecifier() const { return _Prim()->GetSpecifier(); }
    bool SetSpecifier(SdfSpecifier specifier) const;
    const TfToken& GetTypeName() const { return _Prim()->GetTypeName(); }
    bool SetTypeName(const TfToken& typeName) const;
    bool ClearTypeName() const;
    bool HasAuthoredTypeName() const;
    bool IsActive() const { return _Prim()->IsActive(); }
    bool SetActive(bool active) const;
    bool ClearActive() const;
    bool HasAuthoredActive() const;
    bool IsLoaded() const { return _Prim()->IsLoaded(); }
    bool IsModel() const { return _Prim()->IsModel(); }
    bool IsGroup() const { return _Prim()->IsGroup(); }
    bool IsComponent() const { return _Prim()->IsComponent(); }
    bool IsSubComponent() const { return _Prim()->IsSubComponent(); }
    bool IsAbstract() const { return _Prim()->IsAbstract(); }
    bool IsDefined() const { return _Prim()->IsDefined(); }
    bool HasDefiningSpecifier() const { return _Prim()->HasDefiningSpecifier(); }
    bool IsPseudoRoot() const { return _Prim()->IsPseudoRoot(); }
    bool GetKind(TfToken* kind) const;
    bool SetKind(const TfToken& kind) const;

    // Properties: the schema's and the authored ones, in dictionary order with the authored order on top.
    TfTokenVector GetPropertyNames(const PropertyPredicateFunc& predicate = {}) const;
    TfTokenVector GetAuthoredPropertyNames(const PropertyPredicateFunc& predicate = {}) const;
    std::vector<UsdProperty> GetProperties(const PropertyPredicateFunc& predicate = {}) const;
    std::vector<UsdProperty> GetAuthoredProperties(const PropertyPredicateFunc& predicate = {}) const;
    std::vector<UsdProperty> GetPropertiesInNamespace(const std::vector<std::string>& namespaces) const;
    std::vector<UsdProperty> GetPropertiesInNamespace(const std::string& namespaces) const;
    std::vector<UsdProperty>
    GetAuthoredPropertiesInNamespace(const std::vector<std::string>& namespaces) const;
    std::vector<UsdProperty> GetAuthoredPropertiesInNamespace(const std::string& namespaces) const;
    TfTokenVector GetPropertyOrder() const;
    void SetPropertyOrder(const TfTokenVector& order) const;
    void ClearPropertyOrder() const;
    /// Removes the property's spec at the edit target.
    bool RemoveProperty(const TfToken& propName);
    UsdProperty GetProperty(const TfToken& propName) const;
    bool HasProperty(const TfToken& propName) const;

    UsdAttribute CreateAttribute(const TfToken& name, const SdfValueTypeName& typeName, bool custom,
                                 SdfVariability variability = SdfVariabilityVarying) const;
    UsdAttribute CreateAttribute(const TfToken& name, const SdfValueTypeName& typeName,
                                 SdfVariability variability = SdfVariabilityVarying) const;
    UsdAttribute CreateAttribute(const std::vector<std::string>& nameElts, const SdfValueTypeName& typeName,
                                 bool custom, SdfVariability variability = SdfVariabilityVarying) const;
    UsdAttribute CreateAttribute(const std::vector<std::string>& nameElts, const SdfValueTypeName& typeName,
                                 SdfVariability variability = SdfVariabilityVarying) const;
    std::vector<UsdAttribute> GetAttributes() const;
    std::vector<UsdAttribute> GetAuthoredAttributes() const;
    UsdAttribute GetAttribute(const TfToken& attrName) const;
    bool HasAttribute(const TfToken& attrName) const;

    UsdRelationship CreateRelationship(const TfToken& relName, bool custom = true) const;
    UsdRelationship CreateRelationship(const std::vector<std::string>& nameElts, bool custom = true) const;
    std::vector<UsdRelationship> GetRelationships() const;
    std::vector<UsdRelationship> GetAuthoredRelationships() const;
    UsdRelationship GetRelationship(const TfToken& relName) const;
    bool HasRelationship(const TfToken& relName) const;

    // Schemas.
    template <typename SchemaType>
    bool IsA() const
    {
        static_assert(std::is_base_of<UsdSchemaBase, SchemaType>::value, "the type must be a schema");
        return _IsA(UsdSchemaRegistry::FindSchemaInfo<SchemaType>());
    }
    bool IsA(const TfType& schemaType) const;
    bool IsA(const TfToken& schemaIdentifier) const;

    TfTokenVector GetAppliedSchemas() const;
    template <typename SchemaType>
    bool HasAPI() const
    {
        _AssertAppliedAPI<SchemaType>();
        return _HasAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>());
    }
    template <typename SchemaType>
    bool HasAPI(const TfToken& instanceName) const
    {
        _AssertMultipleApplyAPI<SchemaType>();
        return _HasAPIInstance(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), instanceName);
    }
    bool HasAPI(const TfType& schemaType) const;
    bool HasAPI(const TfType& schemaType, const TfToken& instanceName) const;
    bool HasAPI(const TfToken& schemaIdentifier) const;
    bool HasAPI(const TfToken& schemaIdentifier, const TfToken& instanceName) const;
    template <typename SchemaType>
    bool CanApplyAPI(std::string* whyNot = nullptr) const
    {
        _AssertSingleApplyAPI<SchemaType>();
        return _CanApplyAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), TfToken(), whyNot);
    }
    template <typename SchemaType>
    bool CanApplyAPI(const TfToken& instanceName, std::string* whyNot = nullptr) const
    {
        _AssertMultipleApplyAPI<SchemaType>();
        return _CanApplyAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), instanceName, whyNot);
    }
    template <typename SchemaType>
    bool ApplyAPI() const
    {
        _AssertSingleApplyAPI<SchemaType>();
        return _ApplyAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), TfToken());
    }
    template <typename SchemaType>
    bool ApplyAPI(const TfToken& instanceName) const
    {
        _AssertMultipleApplyAPI<SchemaType>();
        return _ApplyAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), instanceName);
    }
    bool ApplyAPI(const TfType& schemaType) const;
    bool ApplyAPI(const TfType& schemaType, const TfToken& instanceName) const;
    bool ApplyAPI(const TfToken& schemaIdentifier) const;
    bool ApplyAPI(const TfToken& schemaIdentifier, const TfToken& instanceName) const;
    template <typename SchemaType>
    bool RemoveAPI() const
    {
        _AssertSingleApplyAPI<SchemaType>();
        return _RemoveAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), TfToken());
    }
    template <typename SchemaType>
    bool RemoveAPI(const TfToken& instanceName) const
    {
        _AssertMultipleApplyAPI<SchemaType>();
        return _RemoveAPI(UsdSchemaRegistry::FindSchemaInfo<SchemaType>(), instanceName);
    }
    bool RemoveAPI(const TfType& schemaType) const;
    bool RemoveAPI(const TfType& schemaType, const TfToken& instanceName) const;
    bool RemoveAPI(const TfToken& schemaIdentifier) const;
    bool RemoveAPI(const TfToken& schemaIdentifier, const TfToken& instanceName) const;
    /// Adds a name to the list of applied schemas at the edit target, known to the registry or not.
    bool AddAppliedSchema(const TfToken& appliedSchemaName) const;
    bool RemoveAppliedSchema(const TfToken& appliedSchemaName) const;

    // Other prims.
    UsdPrim GetChild(const TfToken& name) const;
    inline SiblingRange GetChildren() const;
    inline SiblingRange GetAllChildren() const;
    inline SiblingRange GetFilteredChildren(const Usd_PrimFlagsPredicate& predicate) const;
    TfTokenVector GetChildrenNames() const;
    TfTokenVector GetAllChildrenNames() const;
    TfTokenVector GetFilteredChildrenNames(const Usd_PrimFlagsPredicate& predicate) const;
    inline SubtreeRange GetDescendants() const;
    inline SubtreeRange GetAllDescendants() const;
    inline SubtreeRange GetFilteredDescendants(const Usd_PrimFlagsPredicate& predicate) const;
    TfTokenVector GetChildrenReorder() const;
    void SetChildrenReorder(const TfTokenVector& order) const;
    void ClearChildrenReorder() const;
    UsdPrim GetParent() const;
    UsdPrim GetNextSibling() const;
    UsdPrim GetFilteredNextSibling(const Usd_PrimFlagsPredicate& predicate) const;
    UsdPrim GetPrimAtPath(const SdfPath& path) const;
    UsdObject GetObjectAtPath(const SdfPath& path) const;
    UsdProperty GetPropertyAtPath(const SdfPath& path) const;
    UsdAttribute GetAttributeAtPath(const SdfPath& path) const;
    UsdRelationship GetRelationshipAtPath(const SdfPath& path) const;

    // Composition arcs.
    UsdVariantSets GetVariantSets() const;
    UsdVariantSet GetVariantSet(const std::string& variantSetName) const;
    bool HasVariantSets() const;
    UsdPayloads GetPayloads() const;
    bool HasPayload() const;
    bool HasAuthoredPayloads() const;
    bool SetPayload(const SdfPayload& payload) const;
    bool SetPayload(const std::string& assetPath, const SdfPath& primPath) const;
    bool SetPayload(const SdfLayerHandle& layer, const SdfPath& primPath) const;
    bool ClearPayload() const;
    void Load(UsdLoadPolicy policy = UsdLoadWithDescendants) const;
    void Unload() const;
    UsdReferences GetReferences() const;
    bool HasAuthoredReferences() const;
    UsdInherits GetInherits() const;
    bool HasAuthoredInherits() const;
    UsdSpecializes GetSpecializes() const;
    bool HasAuthoredSpecializes() const;

    // Instancing.
    bool IsInstanceable() const;
    bool SetInstanceable(bool instanceable) const;
    bool ClearInstanceable() const;
    bool HasAuthoredInstanceable() const;
    bool IsInstance() const { return _Prim()->IsInstance(); }
    bool IsInstanceProxy() const { return !_ProxyPrimPath().IsEmpty(); }
    static bool IsPrototypePath(const SdfPath& path);
    static bool IsPathInPrototype(const SdfPath& path);
    bool IsPrototype() const { return _Prim()->IsPrototype(); }
    bool IsInPrototype() const;
    UsdPrim GetPrototype() const;
    UsdPrim GetPrimInPrototype() const;
    std::vector<UsdPrim> GetInstances() const;

private:
    friend class UsdObject;
    friend class UsdProperty;
    friend class UsdPrimSiblingIterator;
    friend class UsdPrimSubtreeIterator;
    friend class UsdPrimRange;
    friend class UsdSchemaBase;
    friend class UsdAPISchemaBase;
    friend class UsdStage;
    friend class Usd_ObjectAccess;
    friend class Usd_PrimFlagsPredicate;

    UsdPrim(const Usd_PrimDataHandle& primData, const SdfPath& proxyPrimPath)
        : UsdObject(primData, proxyPrimPath)
    {}
    UsdPrim(UsdObjType, const Usd_PrimDataHandle& prim, const SdfPath& proxyPrimPath, const TfToken&)
        : UsdObject(prim, proxyPrimPath)
    {}
    explicit UsdPrim(const Usd_PrimCursor& cursor) : UsdObject(cursor.GetPrim(), cursor.GetProxyPath()) {}
    Usd_PrimCursor _Cursor() const { return Usd_PrimCursor(get_pointer(_Prim()), _ProxyPrimPath()); }

    template <class SchemaType>
    static constexpr void _AssertAppliedAPI()
    {
        static_assert(SchemaType::schemaKind == UsdSchemaKind::SingleApplyAPI ||
                          SchemaType::schemaKind == UsdSchemaKind::MultipleApplyAPI,
                      "the type must be an applied API schema");
    }
    template <class SchemaType>
    static constexpr void _AssertSingleApplyAPI()
    {
        static_assert(SchemaType::schemaKind == UsdSchemaKind::SingleApplyAPI,
                      "the type must be an API schema that is applied once");
    }
    template <class SchemaType>
    static constexpr void _AssertMultipleApplyAPI()
    {
        static_assert(SchemaType::schemaKind == UsdSchemaKind::MultipleApplyAPI,
                      "the type must be an API schema that is applied under instance names");
    }
    bool _IsA(const UsdSchemaRegistry::SchemaInfo* schema) const;
    bool _HasAPI(const UsdSchemaRegistry::SchemaInfo* schema) const;
    bool _HasAPIInstance(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName) const;
    bool _CanApplyAPI(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName,
                      std::string* whyNot) const;
    bool _ApplyAPI(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName) const;
    bool _RemoveAPI(const UsdSchemaRegistry::SchemaInfo* schema, const TfToken& instanceName) const;

    TfTokenVector _GetPropertyNames(bool onlyAuthored, const PropertyPredicateFunc& predicate) const;
    std::vector<UsdProperty> _GetPropertiesInNamespace(const std::string& namespaces,
                                                       bool onlyAuthored) const;
    template <class PropertyType>
    std::vector<PropertyType> _GetPropertiesOfType(bool onlyAuthored) const;
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/usd/usd/primChildren.h>
