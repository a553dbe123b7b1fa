#pragma once

/// Enumerators of any enumeration, with their names.

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/preprocessorUtilsLite.h>
#include <pxr/base/tf/safeTypeCompare.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// An enumerator together with its type. Names are registered by TF_ADD_ENUM_NAME inside
/// TF_REGISTRY_FUNCTION(TfEnum). Thread: any.
class TfEnum
{
public:
    TfEnum() = default;
    template <class T>
    TfEnum(T value, std::enable_if_t<std::is_enum_v<T>>* = nullptr)
        : _type(&typeid(T)), _value(static_cast<int>(value))
    {}
    TfEnum(const std::type_info& type, int value) : _type(&type), _value(value) {}

    bool operator==(const TfEnum& o) const { return _value == o._value && *_type == *o._type; }
    bool operator!=(const TfEnum& o) const { return !(*this == o); }
    bool operator<(const TfEnum& o) const
    {
        return _type->before(*o._type) || (!o._type->before(*_type) && _value < o._value);
    }
    bool operator>(const TfEnum& o) const { return o < *this; }
    bool operator<=(const TfEnum& o) const { return !(o < *this); }
    bool operator>=(const TfEnum& o) const { return !(*this < o); }

    template <class T>
    std::enable_if_t<std::is_enum_v<T>, bool> operator==(T value) const
    {
        return static_cast<int>(value) == _value && IsA<T>();
    }
    template <class T>
    std::enable_if_t<std::is_enum_v<T>, bool> operator!=(T value) const
    {
        return !(*this == value);
    }
    template <class T>
    friend std::enable_if_t<std::is_enum_v<T>, bool> operator==(T value, TfEnum const& e)
    {
        return e == value;
    }
    template <class T>
    friend std::enable_if_t<std::is_enum_v<T>, bool> operator!=(T value, TfEnum const& e)
    {
        return !(e == value);
    }

    template <class T>
    bool IsA() const
    {
        return IsA(typeid(T));
    }
    bool IsA(const std::type_info& type) const { return *_type == type; }
    const std::type_info& GetType() const { return *_type; }
    const int& GetValueAsInt() const { return _value; }
    /// Returns the enumerator; a fatal error when it is of another type.
    template <typename T>
    T GetValue() const
    {
        if (!IsA<T>()) {
            _FatalGetValueError(typeid(T));
        }
        return T(_value);
    }
    template <typename T, typename = std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>>>
    operator T() const
    {
        return T(_value);
    }

    /// Returns the registered name, "" for none.
    VESK_USD_API static std::string GetName(TfEnum value);
    /// Returns "Type::Name", "" for a value without a name.
    VESK_USD_API static std::string GetFullName(TfEnum value);
    /// Returns the name for people, the plain name where none was given.
    VESK_USD_API static std::string GetDisplayName(TfEnum value);
    static std::vector<std::string> GetAllNames(TfEnum value) { return GetAllNames(value.GetType()); }
    VESK_USD_API static std::vector<std::string> GetAllNames(const std::type_info& type);
    template <class T>
    static std::vector<std::string> GetAllNames()
    {
        return GetAllNames(typeid(T));
    }
    template <class T>
    static T GetValueFromName(const std::string& name, bool* found = nullptr)
    {
        return T(GetValueFromName(typeid(T), name, found).GetValueAsInt());
    }
    /// Returns the value of a name, -1 of the type where there is none.
    VESK_USD_API static TfEnum GetValueFromName(const std::type_info& type, const std::string& name,
                                                bool* found = nullptr);

    VESK_USD_API static void AddName(TfEnum value, const std::string& name,
                                     const std::string& displayName = "");

private:
    [[noreturn]] VESK_USD_API void _FatalGetValueError(std::type_info const& queried) const;

    const std::type_info* _type = &typeid(int);
    int _value = 0;
};

template <class HashState, class Enum>
std::enable_if_t<std::is_same_v<Enum, TfEnum>> TfHashAppend(HashState& h, Enum const& e)
{
    h.Append(TfHashAsCStr(e.GetType().name()));
    h.Append(e.GetValueAsInt());
}

VESK_USD_API std::ostream& operator<<(std::ostream& out, const TfEnum& e);

/// Names an enumerator: TF_ADD_ENUM_NAME(VALUE) or (VALUE, "display name").
#define TF_ADD_ENUM_NAME(VALUE, ...) PXR_NS::TfEnum::AddName(VALUE, #VALUE, std::string(__VA_ARGS__))

PXR_NAMESPACE_CLOSE_SCOPE
