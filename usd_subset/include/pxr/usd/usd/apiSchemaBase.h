#pragma once

#include <pxr/base/tf/type.h>
#include <pxr/usd/usd/schemaBase.h>
#include <pxr/usd/usd/schemaClass.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of all API schemas. Applied ones are compatible with prims that they were applied to.
class VESK_USD_API UsdAPISchemaBase : public UsdSchemaBase
{
public:
    static constexpr UsdSchemaKind schemaKind = UsdSchemaKind::AbstractBase;

    explicit UsdAPISchemaBase(const UsdPrim& prim = UsdPrim()) : UsdSchemaBase(prim) {}
    explicit UsdAPISchemaBase(const UsdSchemaBase& schemaObj) : UsdSchemaBase(schemaObj) {}
    ~UsdAPISchemaBase() override = 0;

    static const TfTokenVector& GetSchemaAttributeNames(bool includeInherited = true);

protected:
    UsdAPISchemaBase(const UsdPrim& prim, const TfToken& instanceName)
        : UsdSchemaBase(prim), _instanceName(instanceName)
    {}
    UsdAPISchemaBase(const UsdSchemaBase& schemaObj, const TfToken& instanceName)
        : UsdSchemaBase(schemaObj), _instanceName(instanceName)
    {}

    UsdSchemaKind _GetSchemaKind() const override;
    bool _IsCompatible() const override;

    /// The name of a multiple-apply schema's instance, empty for the others.
    const TfToken& _GetInstanceName() const { return _instanceName; }
    static TfTokenVector _GetMultipleApplyInstanceNames(const UsdPrim& prim, const TfType& schemaType);

private:
    friend class UsdSchemaRegistry;
    static const TfType& _GetStaticTfType();
    const TfType& _GetTfType() const override;

    TfToken _instanceName;
};

PXR_NAMESPACE_CLOSE_SCOPE
