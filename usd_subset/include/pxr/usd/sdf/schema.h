#pragma once

/// What fields specs have, and what types attributes may have.

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/schemaBase.h>
#include <pxr/usd/sdf/schemaKeys.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/valueTypeName.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The schema of scene description: the fields of SdfSchemaBase, and the types of attributes. Thread: any.
class SdfSchema : public SdfSchemaBase
{
public:
    VESK_USD_API static const SdfSchema& GetInstance();

    /// \name Types
    /// @{
    /// Returns the type of a name or alias, the empty one for none.
    VESK_USD_API SdfValueTypeName FindType(const TfToken& typeName) const;
    VESK_USD_API SdfValueTypeName FindType(const std::string& typeName) const;
    VESK_USD_API SdfValueTypeName FindType(const char* typeName) const;
    /// Returns the type name of a C++ type and role.
    VESK_USD_API SdfValueTypeName FindType(const TfType& type, const TfToken& role = TfToken()) const;
    VESK_USD_API SdfValueTypeName FindType(const VtValue& value, const TfToken& role = TfToken()) const;
    /// As FindType(); for a name that nothing registered it makes a type name that has no C++ type.
    VESK_USD_API SdfValueTypeName FindOrCreateType(const TfToken& typeName) const;
    VESK_USD_API std::vector<SdfValueTypeName> GetAllTypes() const;
    /// @}

    SdfSchema(const SdfSchema&) = delete;
    SdfSchema& operator=(const SdfSchema&) = delete;

private:
    SdfSchema() = default;
};

PXR_NAMESPACE_CLOSE_SCOPE
