#pragma once

#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/api.h>
#include <pxr/usd/usd/primDefinition.h>

#include <memory>

PXR_NAMESPACE_OPEN_SCOPE

/// A prim's type name with its applied schemas, and what follows from them. One object serves all prims that
/// agree in both; it lives as long as the process.
class UsdPrimTypeInfo
{
public:
    /// The composed type name, known to the schema registry or not.
    const TfToken& GetTypeName() const { return _typeName; }

    /// The API schemas that the prim's own opinions apply, strongest first.
    const TfTokenVector& GetAppliedAPISchemas() const { return _appliedAPISchemas; }

    /// The type of the schema that the type name stands for; unknown when the registry does not know the
    /// name.
    const TfType& GetSchemaType() const { return _schemaType; }
    const TfToken& GetSchemaTypeName() const { return _schemaTypeName; }

    const UsdPrimDefinition& GetPrimDefinition() const { return *_primDefinition; }

    bool operator==(const UsdPrimTypeInfo& other) const { return this == &other; }
    bool operator!=(const UsdPrimTypeInfo& other) const { return this != &other; }

    VESK_USD_API static const UsdPrimTypeInfo& GetEmptyPrimType();

private:
    friend class Usd_PrimTypeInfoCache;
    UsdPrimTypeInfo() = default;

    TfToken _typeName;
    TfTokenVector _appliedAPISchemas;
    TfType _schemaType;
    TfToken _schemaTypeName;
    const UsdPrimDefinition* _primDefinition = nullptr;
    std::unique_ptr<UsdPrimDefinition> _ownedPrimDefinition;
};

PXR_NAMESPACE_CLOSE_SCOPE
