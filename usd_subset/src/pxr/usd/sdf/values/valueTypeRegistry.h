#pragma once

#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/type.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/valueTypeName.h>

#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// What all names of one C++ type and role share.
struct Sdf_CoreType
{
    TfType type;
    std::string cppTypeName;
    TfToken role;
    SdfTupleDimensions dimensions;
    VtValue defaultValue;
    TfEnum unit;
    std::vector<TfToken> aliases;
};

/// One name of a type; names without a registered type have themselves as scalar and array.
struct Sdf_ValueType
{
    TfToken name;
    const Sdf_CoreType* core = nullptr;
    const Sdf_ValueType* scalar = nullptr;
    const Sdf_ValueType* array = nullptr;
};

/// All type names. They are made at first use; only names without a type are added later. Thread: any.
class Sdf_ValueTypeRegistry
{
public:
    static Sdf_ValueTypeRegistry& GetInstance();

    SdfValueTypeName Find(const TfToken& name) const;
    SdfValueTypeName Find(const TfType& type, const TfToken& role) const;
    SdfValueTypeName FindOrCreate(const TfToken& name);
    const std::vector<SdfValueTypeName>& GetAll() const { return m_all; }

private:
    struct Definition
    {
        const char* name;
        VtValue value;
        VtValue arrayValue; // empty for types without arrays
        std::string cppTypeName;
        TfToken role;
        SdfTupleDimensions dimensions;
        TfEnum unit;
    };

    Sdf_ValueTypeRegistry();
    void _AddStandardTypes();
    void _AddLegacyTypes();
    template <class T>
    void _Add(const char* name, const T& value, SdfTupleDimensions dimensions = {}, const TfToken& role = {},
              const char* cppTypeName = nullptr);
    void _Add(const Definition& definition);
    Sdf_ValueType* _AddName(const std::string& name, const VtValue& value, const std::string& cppTypeName,
                            const Definition& definition);

    std::map<std::pair<TfType, TfToken>, Sdf_CoreType> m_cores;
    std::unordered_map<TfToken, Sdf_ValueType, TfToken::HashFunctor> m_types;
    std::vector<SdfValueTypeName> m_all;
    std::mutex m_untypedMutex;
    std::map<TfToken, std::pair<Sdf_CoreType, Sdf_ValueType>> m_untyped;
};

PXR_NAMESPACE_CLOSE_SCOPE
