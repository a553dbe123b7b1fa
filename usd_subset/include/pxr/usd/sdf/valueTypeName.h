#pragma once

/// The names of attribute types.

#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class VtValue;
struct Sdf_ValueType;

/// The dimensions of a value: none for a scalar, one for a vector, two for a matrix.
struct SdfTupleDimensions
{
    SdfTupleDimensions() : d{0, 0}, size(0) {}
    SdfTupleDimensions(size_t m) : d{m, 0}, size(1) {}
    SdfTupleDimensions(size_t m, size_t n) : d{m, n}, size(2) {}

    bool operator==(const SdfTupleDimensions& rhs) const
    {
        return size == rhs.size && (size < 1 || d[0] == rhs.d[0]) && (size < 2 || d[1] == rhs.d[1]);
    }
    bool operator!=(const SdfTupleDimensions& rhs) const { return !(*this == rhs); }

    size_t d[2];
    size_t size;
};

/// A registered type name: a C++ type with a role. Two names are equal when type and role are. Obtained from
/// SdfValueTypeNames or SdfSchema::GetInstance().FindType(); lives as long as the process.
class SdfValueTypeName
{
public:
    /// Makes the empty name.
    SdfValueTypeName() = default;

    VESK_USD_API TfToken GetAsToken() const;
    VESK_USD_API const TfType& GetType() const;
    VESK_USD_API const std::string& GetCPPTypeName() const;
    VESK_USD_API const TfToken& GetRole() const;
    VESK_USD_API const VtValue& GetDefaultValue() const;
    VESK_USD_API const TfEnum& GetDefaultUnit() const;
    VESK_USD_API SdfValueTypeName GetScalarType() const;
    VESK_USD_API SdfValueTypeName GetArrayType() const;
    VESK_USD_API bool IsScalar() const;
    VESK_USD_API bool IsArray() const;
    VESK_USD_API SdfTupleDimensions GetDimensions() const;
    /// Returns all names of the type and role, the preferred one first.
    VESK_USD_API std::vector<TfToken> GetAliasesAsTokens() const;

    VESK_USD_API bool operator==(const SdfValueTypeName& rhs) const;
    /// Returns whether the text is one of its names.
    VESK_USD_API bool operator==(const std::string& rhs) const;
    VESK_USD_API bool operator==(const TfToken& rhs) const;
    bool operator!=(const SdfValueTypeName& rhs) const { return !(*this == rhs); }
    bool operator!=(const std::string& rhs) const { return !(*this == rhs); }
    bool operator!=(const TfToken& rhs) const { return !(*this == rhs); }
    friend bool operator==(const std::string& lhs, const SdfValueTypeName& rhs) { return rhs == lhs; }
    friend bool operator!=(const std::string& lhs, const SdfValueTypeName& rhs) { return !(rhs == lhs); }
    friend bool operator==(const TfToken& lhs, const SdfValueTypeName& rhs) { return rhs == lhs; }
    friend bool operator!=(const TfToken& lhs, const SdfValueTypeName& rhs) { return !(rhs == lhs); }

    VESK_USD_API size_t GetHash() const;
    friend size_t hash_value(const SdfValueTypeName& name) { return name.GetHash(); }
    explicit operator bool() const { return _type != nullptr; }

private:
    friend class Sdf_ValueTypeRegistry;
    explicit SdfValueTypeName(const Sdf_ValueType* type) : _type(type) {}

    const Sdf_ValueType* _type = nullptr;
};

struct SdfValueTypeNameHash
{
    size_t operator()(const SdfValueTypeName& name) const { return name.GetHash(); }
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfValueTypeName& name);

PXR_NAMESPACE_CLOSE_SCOPE
