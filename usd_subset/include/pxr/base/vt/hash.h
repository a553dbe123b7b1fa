#pragma once

/// Hashes of values of any type.

#include <pxr/base/tf/hash.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <type_traits>
#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

template <class T, class = void>
struct Vt_IsHashable : std::false_type
{};
template <class T>
struct Vt_IsHashable<T, std::void_t<decltype(TfHash()(std::declval<T const&>()))>> : std::true_type
{};

template <class T>
constexpr bool VtIsHashable()
{
    return Vt_IsHashable<T>::value;
}

/// Reports that a type without a hash was hashed.
VESK_USD_API void Vt_PostUnhashable(std::type_info const& type);

/// Hashes the value; posts a coding error and returns 0 for a type without a hash.
template <class T>
size_t VtHashValue(T const& value)
{
    if constexpr (VtIsHashable<T>()) {
        return TfHash()(value);
    } else {
        Vt_PostUnhashable(typeid(T));
        return 0;
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
