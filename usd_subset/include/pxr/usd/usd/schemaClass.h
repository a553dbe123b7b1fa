#pragma once

/// Shorthand for what all schema classes declare alike: kind, constructors, Get, Define or Apply, and
/// accessors.
///
/// Inside a class body: VESK_USD_ABSTRACT_SCHEMA, VESK_USD_CONCRETE_SCHEMA, VESK_USD_API_SCHEMA or
/// VESK_USD_APPLIED_SCHEMA first, then VESK_USD_SCHEMA_ATTR and VESK_USD_SCHEMA_REL for each property.

#include <pxr/usd/usd/schemaBase.h>

#define VESK_USD_SCHEMA_IMPL(Class, Base, Kind)                                                              \
public:                                                                                                      \
    static constexpr UsdSchemaKind schemaKind = UsdSchemaKind::Kind;                                         \
    explicit Class(const UsdPrim& prim = UsdPrim()) : Base(prim) {}                                          \
    explicit Class(const UsdSchemaBase& schemaObj) : Base(schemaObj) {}                                      \
    VESK_USD_SCHEMA_COMMON(Class)

#define VESK_USD_SCHEMA_COMMON(Class)                                                                        \
    static const TfTokenVector& GetSchemaAttributeNames(bool includeInherited = true);                       \
    static Class Get(const UsdStagePtr& stage, const SdfPath& path);                                         \
                                                                                                             \
protected:                                                                                                   \
    UsdSchemaKind _GetSchemaKind() const override;                                                           \
                                                                                                             \
private:                                                                                                     \
    friend class UsdSchemaRegistry;                                                                          \
    static const TfType& _GetStaticTfType();                                                                 \
    const TfType& _GetTfType() const override;                                                               \
                                                                                                             \
public:

/// A typed schema that no prim can have as its type.
#define VESK_USD_ABSTRACT_SCHEMA(Class, Base) VESK_USD_SCHEMA_IMPL(Class, Base, AbstractTyped)

/// A typed schema that prims can have as their type.
#define VESK_USD_CONCRETE_SCHEMA(Class, Base)                                                                \
    VESK_USD_SCHEMA_IMPL(Class, Base, ConcreteTyped)                                                         \
    static Class Define(const UsdStagePtr& stage, const SdfPath& path);

/// A schema of functions alone, which works on any prim.
#define VESK_USD_API_SCHEMA(Class, Base) VESK_USD_SCHEMA_IMPL(Class, Base, NonAppliedAPI)

/// A schema that is applied to prims by name.
#define VESK_USD_APPLIED_SCHEMA(Class, Base)                                                                 \
    VESK_USD_SCHEMA_IMPL(Class, Base, SingleApplyAPI)                                                        \
    static bool CanApply(const UsdPrim& prim, std::string* whyNot = nullptr);                                \
    static Class Apply(const UsdPrim& prim);

/// Get<Name>Attr and Create<Name>Attr of the attribute called by a token.
#define VESK_USD_SCHEMA_ATTR(Name, token)                                                                    \
    UsdAttribute Get##Name##Attr() const { return GetPrim().GetAttribute(token); }                           \
    UsdAttribute Create##Name##Attr(const VtValue& defaultValue = VtValue(), bool writeSparsely = false)     \
        const                                                                                                \
    {                                                                                                        \
        return _CreateSchemaAttr(token, defaultValue, writeSparsely);                                        \
    }

/// Get<Name>Rel and Create<Name>Rel of the relationship called by a token.
#define VESK_USD_SCHEMA_REL(Name, token)                                                                     \
    UsdRelationship Get##Name##Rel() const { return GetPrim().GetRelationship(token); }                      \
    UsdRelationship Create##Name##Rel() const                                                                \
    {                                                                                                        \
        return GetPrim().CreateRelationship(token, /*custom=*/false);                                        \
    }
