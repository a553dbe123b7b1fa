#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/api.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/common.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/references.h>
#include <pxr/usd/usd/relationship.h>

PXR_NAMESPACE_OPEN_SCOPE

class TfType;
class UsdPrimDefinition;

/// The root of all schema classes: a prim seen through the names that one schema gives to its properties.
///
/// A schema object is a small value. It is true when its prim is valid and compatible with the schema.
class VESK_USD_API UsdSchemaBase
{
public:
    static constexpr UsdSchemaKind schemaKind = UsdSchemaKind::AbstractBase;

    explicit UsdSchemaBase(const UsdPrim& prim = UsdPrim());
    explicit UsdSchemaBase(const UsdSchemaBase& otherSchema);
    UsdSchemaBase& operator=(const UsdSchemaBase& otherSchema) = default;
    virtual ~UsdSchemaBase();

    bool IsConcrete() const { return GetSchemaKind() == UsdSchemaKind::ConcreteTyped; }
    bool IsTyped() const { return IsConcrete() || GetSchemaKind() == UsdSchemaKind::AbstractTyped; }
    bool IsAPISchema() const
    {
        return GetSchemaKind() == UsdSchemaKind::NonAppliedAPI || IsAppliedAPISchema();
    }
    bool IsAppliedAPISchema() const
    {
        return GetSchemaKind() == UsdSchemaKind::SingleApplyAPI || IsMultipleApplyAPISchema();
    }
    bool IsMultipleApplyAPISchema() const { return GetSchemaKind() == UsdSchemaKind::MultipleApplyAPI; }
    UsdSchemaKind GetSchemaKind() const { return _GetSchemaKind(); }

    UsdPrim GetPrim() const { return _prim; }
    SdfPath GetPath() const;

    /// The registered definition of the schema that this class stands for, whatever the prim's own type is.
    const UsdPrimDefinition* GetSchemaClassPrimDefinition() const;

    /// The names of the attributes that the schema declares; its bases' first.
    static const TfTokenVector& GetSchemaAttributeNames(bool includeInherited = true);

    explicit operator bool() const;

protected:
    virtual UsdSchemaKind _GetSchemaKind() const;
    const TfType& _GetType() const { return _GetTfType(); }
    virtual bool _IsCompatible() const;

    /// Creates an attribute; where `writeSparsely` is set, only if `defaultValue` differs from the fallback.
    UsdAttribute _CreateAttr(const TfToken& attrName, const SdfValueTypeName& typeName, bool custom,
                             SdfVariability variability, const VtValue& defaultValue,
                             bool writeSparsely) const;

    /// The same with the type and variability that this class's schema declares for the name.
    UsdAttribute _CreateSchemaAttr(const TfToken& attrName, const VtValue& defaultValue,
                                   bool writeSparsely) const;

private:
    friend class UsdSchemaRegistry;
    static const TfType& _GetStaticTfType();
    virtual const TfType& _GetTfType() const;

    UsdPrim _prim;
};

PXR_NAMESPACE_CLOSE_SCOPE
