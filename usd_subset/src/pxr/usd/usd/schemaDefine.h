#pragma once

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/type.h>
#include <pxr/usd/usd/schemaBase.h>
#include <pxr/usd/usd/schemaRegistry.h>
#include <pxr/usd/usd/stage.h>

#include <string>

/// Definitions of what schemaClass.h declares. A class's base has to be defined before it.

PXR_NAMESPACE_OPEN_SCOPE

/// The attribute names of a schema class, its bases' first where `includeInherited` is set.
VESK_USD_API TfTokenVector Usd_FindSchemaAttributeNames(const TfType& type, bool includeInherited);

/// The prim at a path for a schema object; invalid, with an error, where there is no stage.
VESK_USD_API UsdPrim Usd_GetSchemaPrim(const UsdStagePtr& stage, const SdfPath& path);
VESK_USD_API UsdPrim Usd_DefineSchemaPrim(const UsdStagePtr& stage, const SdfPath& path, const TfType& type);

PXR_NAMESPACE_CLOSE_SCOPE

#define VESK_USD_DEFINE_SCHEMA_TYPE(Class, Base)                                                             \
    namespace {                                                                                              \
    const TfType Usd_typeOf##Class = TfType::Define<Class, TfType::Bases<Base>>();                           \
    }                                                                                                        \
    UsdSchemaKind Class::_GetSchemaKind() const { return schemaKind; }                                       \
    const TfType& Class::_GetStaticTfType()                                                                  \
    {                                                                                                        \
        static const TfType type = TfType::Find<Class>();                                                    \
        return type;                                                                                         \
    }                                                                                                        \
    const TfType& Class::_GetTfType() const { return _GetStaticTfType(); }                                   \
    const TfTokenVector& Class::GetSchemaAttributeNames(bool includeInherited)                               \
    {                                                                                                        \
        static const TfTokenVector local = Usd_FindSchemaAttributeNames(_GetStaticTfType(), false);          \
        static const TfTokenVector all = Usd_FindSchemaAttributeNames(_GetStaticTfType(), true);             \
        return includeInherited ? all : local;                                                               \
    }

#define VESK_USD_DEFINE_SCHEMA(Class, Base)                                                                  \
    VESK_USD_DEFINE_SCHEMA_TYPE(Class, Base)                                                                 \
    Class Class::Get(const UsdStagePtr& stage, const SdfPath& path)                                          \
    {                                                                                                        \
        return Class(Usd_GetSchemaPrim(stage, path));                                                        \
    }

#define VESK_USD_DEFINE_CONCRETE_SCHEMA(Class, Base)                                                         \
    VESK_USD_DEFINE_SCHEMA(Class, Base)                                                                      \
    Class Class::Define(const UsdStagePtr& stage, const SdfPath& path)                                       \
    {                                                                                                        \
        return Class(Usd_DefineSchemaPrim(stage, path, _GetStaticTfType()));                                 \
    }

#define VESK_USD_DEFINE_APPLIED_SCHEMA(Class, Base)                                                          \
    VESK_USD_DEFINE_SCHEMA(Class, Base)                                                                      \
    bool Class::CanApply(const UsdPrim& prim, std::string* whyNot)                                           \
    {                                                                                                        \
        return prim.CanApplyAPI<Class>(whyNot);                                                              \
    }                                                                                                        \
    Class Class::Apply(const UsdPrim& prim) { return prim.ApplyAPI<Class>() ? Class(prim) : Class(); }
