#pragma once

/// Text of values, for people and for messages.

#include <pxr/base/tf/functionRef.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <ostream>
#include <type_traits>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class VtValue;

/// Writes "<'type' @ address>" for a type that has no text.
VESK_USD_API std::ostream& Vt_StreamOutGeneric(std::type_info const& type, void const* object,
                                               std::ostream& stream);

template <class T, class = void>
struct Vt_IsStreamable : std::false_type
{};
template <class T>
struct Vt_IsStreamable<T, std::void_t<decltype(std::declval<std::ostream&>() << std::declval<T const&>())>>
    : std::true_type
{};

/// Writes a value by its operator<< where it has one. Numbers get the shortest text that reads back to the
/// same value, bool and characters are written as integers.
template <class T>
std::ostream& VtStreamOut(T const& value, std::ostream& stream)
{
    if constexpr (Vt_IsStreamable<T>::value) {
        return stream << value;
    } else {
        return Vt_StreamOutGeneric(typeid(T), static_cast<void const*>(&value), stream);
    }
}

VESK_USD_API std::ostream& VtStreamOut(bool const& value, std::ostream& stream);
VESK_USD_API std::ostream& VtStreamOut(char const& value, std::ostream& stream);
VESK_USD_API std::ostream& VtStreamOut(unsigned char const& value, std::ostream& stream);
VESK_USD_API std::ostream& VtStreamOut(signed char const& value, std::ostream& stream);
VESK_USD_API std::ostream& VtStreamOut(float const& value, std::ostream& stream);
VESK_USD_API std::ostream& VtStreamOut(double const& value, std::ostream& stream);
VESK_USD_API std::ostream& VtStreamOut(std::vector<VtValue> const& value, std::ostream& stream);

/// Writes "[a, b, c]"; `streamNext` writes one element a call.
VESK_USD_API void Vt_StreamOutElements(std::ostream& stream, size_t count,
                                       TfFunctionRef<void(std::ostream&)> streamNext);

PXR_NAMESPACE_CLOSE_SCOPE
