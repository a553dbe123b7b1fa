#pragma once

/// A registry of types with their names and bases.

#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A handle to a registered type. Types are declared (a name and bases) and defined (a C++ type too), usually
/// inside TF_REGISTRY_FUNCTION(TfType), and are never removed. Thread: any.
class TfType
{
    struct _TypeInfo;
    friend class Tf_TypeRegistry;

public:
    template <class... Args>
    struct Bases
    {};

    /// Base of the factories that a type may carry.
    class FactoryBase
    {
    public:
        VESK_USD_API virtual ~FactoryBase();
    };

    /// Makes the unknown type.
    TfType() = default;
    VESK_USD_API static TfType const& GetUnknownType();
    /// Returns the base of all types.
    VESK_USD_API static TfType const& GetRoot();

    bool operator==(TfType const& o) const { return _info == o._info; }
    bool operator!=(TfType const& o) const { return _info != o._info; }
    bool operator<(TfType const& o) const { return std::less<>()(_info, o._info); }
    bool operator>(TfType const& o) const { return o < *this; }
    bool operator<=(TfType const& o) const { return !(o < *this); }
    bool operator>=(TfType const& o) const { return !(*this < o); }

    /// \name Lookup; the unknown type where nothing is found
    /// @{
    template <typename T>
    static TfType const& Find()
    {
        return FindByTypeid(typeid(T));
    }
    /// Finds the dynamic type of the object.
    template <typename T>
    static TfType const& Find(T const& object)
    {
        return FindByTypeid(typeid(object));
    }
    static TfType const& Find(std::type_info const& type) { return FindByTypeid(type); }
    VESK_USD_API static TfType const& FindByTypeid(std::type_info const& type);
    VESK_USD_API static TfType const& FindByName(std::string const& name);
    /// Finds a type derived from this one by an alias under this type, else by its own name.
    VESK_USD_API TfType const& FindDerivedByName(std::string const& name) const;
    template <typename Base>
    static TfType const& FindDerivedByName(std::string const& name)
    {
        return Find<Base>().FindDerivedByName(name);
    }
    /// @}

    /// Returns the name, "TfType::_Unknown" for the unknown type.
    VESK_USD_API std::string const& GetTypeName() const;
    /// Returns the C++ type, void for one that is declared only.
    VESK_USD_API std::type_info const& GetTypeid() const;
    /// Returns the readable name of a C++ type, without the internal namespace.
    VESK_USD_API static std::string GetCanonicalTypeName(std::type_info const& type);

    VESK_USD_API std::vector<TfType> GetBaseTypes() const;
    VESK_USD_API std::vector<TfType> GetDirectlyDerivedTypes() const;
    VESK_USD_API void GetAllDerivedTypes(std::set<TfType>* result) const;
    /// Appends this type and its ancestors: a type comes before its bases, bases in the order of C++'s
    /// method resolution of other languages (C3 linearization).
    VESK_USD_API void GetAllAncestorTypes(std::vector<TfType>* result) const;
    VESK_USD_API bool IsA(TfType queryType) const;
    template <typename T>
    bool IsA() const
    {
        return IsA(Find<T>());
    }

    bool IsUnknown() const { return _info == nullptr; }
    typedef TfType::_TypeInfo*(TfType::*UnspecifiedBoolType);
    operator UnspecifiedBoolType() const { return _info ? &TfType::_info : nullptr; }
    bool operator!() const { return IsUnknown(); }
    bool IsRoot() const { return *this == GetRoot(); }
    VESK_USD_API bool IsEnumType() const;
    VESK_USD_API bool IsPlainOldDataType() const;
    VESK_USD_API size_t GetSizeof() const;

    /// \name Registration
    /// @{
    VESK_USD_API static TfType const& Declare(std::string const& typeName);
    VESK_USD_API static TfType const& Declare(std::string const& typeName, std::vector<TfType> const& bases);

    /// Defines T with its direct bases: Define<Mesh, TfType::Bases<Gprim>>().
    template <typename T, typename B>
    static TfType const& Define()
    {
        return _Define(typeid(T), _BaseIds(static_cast<B*>(nullptr)), _Sizeof<T>(), std::is_trivial_v<T>,
                       std::is_enum_v<T>);
    }
    template <typename T>
    static TfType const& Define()
    {
        return Define<T, Bases<>>();
    }

    /// Names this type under a base: base.FindDerivedByName(alias) then finds it.
    VESK_USD_API void AddAlias(TfType base, std::string const& alias) const;
    template <typename Base, typename Derived>
    static void AddAlias(std::string const& alias)
    {
        Declare(GetCanonicalTypeName(typeid(Derived)))
            .AddAlias(Declare(GetCanonicalTypeName(typeid(Base))), alias);
    }
    TfType const& Alias(TfType base, std::string const& alias) const
    {
        AddAlias(base, alias);
        return *this;
    }
    /// Returns the aliases that a derived type has under this one.
    VESK_USD_API std::vector<std::string> GetAliases(TfType derivedType) const;

    VESK_USD_API void SetFactory(std::unique_ptr<FactoryBase> factory) const;
    template <class T>
    void SetFactory() const
    {
        SetFactory(std::unique_ptr<FactoryBase>(new T));
    }
    template <class T>
    T* GetFactory() const
    {
        return dynamic_cast<T*>(_GetFactory());
    }
    /// @}

    template <class HashState>
    friend void TfHashAppend(HashState& h, TfType const& type)
    {
        h.Append(static_cast<const void*>(type._info));
    }

private:
    explicit TfType(_TypeInfo* info) : _info(info) {}

    template <class T>
    static constexpr size_t _Sizeof()
    {
        if constexpr (std::is_void_v<T>) {
            return 0;
        } else {
            return sizeof(T);
        }
    }
    template <class... Args>
    static std::vector<std::type_info const*> _BaseIds(Bases<Args...>*)
    {
        return {&typeid(Args)...};
    }
    VESK_USD_API static TfType const& _Define(std::type_info const& type,
                                              std::vector<std::type_info const*> const& bases, size_t size,
                                              bool isPod, bool isEnum);
    VESK_USD_API FactoryBase* _GetFactory() const;

    _TypeInfo* _info = nullptr;
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, TfType const& type);

PXR_NAMESPACE_CLOSE_SCOPE
