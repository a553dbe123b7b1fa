#include "pxr/base/vt/castRegistry.h"

#include <pxr/base/gf/half.h>
#include <pxr/base/tf/token.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// The numbers as C++ sees them: half computes as float.
template <class T>
struct Arithmetic
{
    using Type = T;
};
template <>
struct Arithmetic<GfHalf>
{
    using Type = float;
};

template <class To, class From>
bool FitsInteger(From from)
{
    using Limits = std::numeric_limits<To>;
    if constexpr (std::is_floating_point_v<From>) {
        // One beyond each limit, as far as the floating-point type can tell it from the limit.
        const From low = static_cast<From>(Limits::lowest()) - static_cast<From>(1);
        const From high = static_cast<From>(Limits::max()) + static_cast<From>(1);
        return std::isfinite(from) && from > low && from < high;
    } else if constexpr (std::is_signed_v<From>) {
        if (from < 0) {
            return std::is_signed_v<To> && static_cast<int64_t>(from) >= static_cast<int64_t>(Limits::min());
        }
    }
    return static_cast<uint64_t>(from) <= static_cast<uint64_t>(Limits::max());
}

/// Converts where the value is in the target's range; fractions are cut.
template <class From, class To>
VtValue Convert(VtValue const& value)
{
    const auto from = static_cast<typename Arithmetic<From>::Type>(value.UncheckedGet<From>());
    if constexpr (std::is_integral_v<To>) {
        if (!FitsInteger<To>(from)) {
            return VtValue();
        }
        return VtValue(static_cast<To>(from));
    } else {
        return VtValue(To(static_cast<typename Arithmetic<To>::Type>(from)));
    }
}

template <class From, class To>
void Register()
{
    if constexpr (!std::is_same_v<From, To>) {
        VtValue::RegisterCast<From, To>(&Convert<From, To>);
    }
}

template <class... Types>
struct Numbers
{
    template <class From>
    static void RegisterFrom()
    {
        (Register<From, Types>(), ...);
    }
    static void RegisterAll() { (RegisterFrom<Types>(), ...); }
};

} // namespace

void Vt_RegisterNumericCasts()
{
    Numbers<bool, char, signed char, unsigned char, short, unsigned short, int, unsigned int, long,
            unsigned long, long long, unsigned long long, GfHalf, float, double>::RegisterAll();
    VtValue::RegisterCast<TfToken, std::string>(
        [](VtValue const& value) { return VtValue(value.UncheckedGet<TfToken>().GetString()); });
    VtValue::RegisterCast<std::string, TfToken>(
        [](VtValue const& value) { return VtValue(TfToken(value.UncheckedGet<std::string>())); });
}

PXR_NAMESPACE_CLOSE_SCOPE
