#include <pxr/usd/sdf/valueTypeName.h>

#include "pxr/usd/sdf/values/valueTypeRegistry.h"

#include <algorithm>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

const Sdf_CoreType& CoreOf(const Sdf_ValueType* type)
{
    static const Sdf_CoreType* const empty = new Sdf_CoreType;
    return type ? *type->core : *empty;
}

bool Contains(const std::vector<TfToken>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

TfToken SdfValueTypeName::GetAsToken() const { return _type ? _type->name : TfToken(); }
const TfType& SdfValueTypeName::GetType() const { return CoreOf(_type).type; }
const std::string& SdfValueTypeName::GetCPPTypeName() const { return CoreOf(_type).cppTypeName; }
const TfToken& SdfValueTypeName::GetRole() const { return CoreOf(_type).role; }
const VtValue& SdfValueTypeName::GetDefaultValue() const { return CoreOf(_type).defaultValue; }
const TfEnum& SdfValueTypeName::GetDefaultUnit() const { return CoreOf(_type).unit; }
SdfTupleDimensions SdfValueTypeName::GetDimensions() const { return CoreOf(_type).dimensions; }
std::vector<TfToken> SdfValueTypeName::GetAliasesAsTokens() const { return CoreOf(_type).aliases; }

SdfValueTypeName SdfValueTypeName::GetScalarType() const
{
    return SdfValueTypeName(_type ? _type->scalar : nullptr);
}

SdfValueTypeName SdfValueTypeName::GetArrayType() const
{
    return SdfValueTypeName(_type ? _type->array : nullptr);
}

bool SdfValueTypeName::IsScalar() const { return _type && _type->scalar == _type; }
bool SdfValueTypeName::IsArray() const { return _type && _type->array == _type; }

bool SdfValueTypeName::operator==(const SdfValueTypeName& rhs) const
{
    return _type == rhs._type || (GetType() == rhs.GetType() && GetRole() == rhs.GetRole());
}

bool SdfValueTypeName::operator==(const std::string& rhs) const
{
    return Contains(CoreOf(_type).aliases, rhs);
}

bool SdfValueTypeName::operator==(const TfToken& rhs) const
{
    return Contains(CoreOf(_type).aliases, rhs.GetString());
}

size_t SdfValueTypeName::GetHash() const { return TfHash::Combine(GetType(), GetRole()); }

std::ostream& operator<<(std::ostream& out, const SdfValueTypeName& name)
{
    return out << name.GetAsToken().GetString();
}

PXR_NAMESPACE_CLOSE_SCOPE
