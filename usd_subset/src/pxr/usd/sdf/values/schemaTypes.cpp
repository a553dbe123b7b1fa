#include <pxr/usd/sdf/schema.h>

#include "pxr/usd/sdf/values/valueTypeRegistry.h"

PXR_NAMESPACE_OPEN_SCOPE

const SdfSchema& SdfSchema::GetInstance()
{
    static const SdfSchema* const schema = new SdfSchema;
    return *schema;
}

SdfValueTypeName SdfSchema::FindType(const TfToken& typeName) const
{
    return Sdf_ValueTypeRegistry::GetInstance().Find(typeName);
}

SdfValueTypeName SdfSchema::FindType(const std::string& typeName) const
{
    // The registry goes first: before it is made, its names need not exist as tokens.
    const Sdf_ValueTypeRegistry& registry = Sdf_ValueTypeRegistry::GetInstance();
    return registry.Find(TfToken::Find(typeName));
}

SdfValueTypeName SdfSchema::FindType(const char* typeName) const { return FindType(std::string(typeName)); }

SdfValueTypeName SdfSchema::FindType(const TfType& type, const TfToken& role) const
{
    return Sdf_ValueTypeRegistry::GetInstance().Find(type, role);
}

SdfValueTypeName SdfSchema::FindType(const VtValue& value, const TfToken& role) const
{
    return FindType(value.GetType(), role);
}

SdfValueTypeName SdfSchema::FindOrCreateType(const TfToken& typeName) const
{
    return Sdf_ValueTypeRegistry::GetInstance().FindOrCreate(typeName);
}

std::vector<SdfValueTypeName> SdfSchema::GetAllTypes() const
{
    return Sdf_ValueTypeRegistry::GetInstance().GetAll();
}

PXR_NAMESPACE_CLOSE_SCOPE
