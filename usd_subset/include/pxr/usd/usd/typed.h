#pragma once

#include <pxr/usd/usd/schemaBase.h>
#include <pxr/usd/usd/schemaClass.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of all schemas that can be a prim's type. It is compatible with prims of its type or a derived
/// one.
class VESK_USD_API UsdTyped : public UsdSchemaBase
{
    VESK_USD_SCHEMA_IMPL(UsdTyped, UsdSchemaBase, AbstractBase)

protected:
    bool _IsCompatible() const override;
};

PXR_NAMESPACE_CLOSE_SCOPE
