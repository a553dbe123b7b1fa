#pragma once

/// GfHalf, a number of 16 bits: IEEE 754 binary16.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/traits.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <limits>
#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

namespace pxr_half {

/// Stores 1 sign bit, 5 exponent bits and 10 fraction bits; computes in float. Values are rounded to the
/// nearest, halfway cases to the even fraction; what is above 65504 by half a step or more becomes infinite.
class half
{
public:
    /// Leaves the value undefined.
    half() = default;
    half(float f) : _h(_FromFloat(f)) {}
    ~half() = default;
    constexpr half(const half&) noexcept = default;
    constexpr half(half&&) noexcept = default;

    operator float() const { return _ToFloat(_h); }

    half operator-() const { return _FromBits(static_cast<uint16_t>(_h ^ 0x8000u)); }

    half& operator=(const half&) = default;
    half& operator=(half&&) noexcept = default;
    half& operator=(float f) { return *this = half(f); }

    half& operator+=(half h) { return *this = half(float(*this) + float(h)); }
    half& operator+=(float f) { return *this = half(float(*this) + f); }
    half& operator-=(half h) { return *this = half(float(*this) - float(h)); }
    half& operator-=(float f) { return *this = half(float(*this) - f); }
    half& operator*=(half h) { return *this = half(float(*this) * float(h)); }
    half& operator*=(float f) { return *this = half(float(*this) * f); }
    half& operator/=(half h) { return *this = half(float(*this) / float(h)); }
    half& operator/=(float f) { return *this = half(float(*this) / f); }

    bool isFinite() const { return _Exponent() < 31; }
    bool isNormalized() const { return _Exponent() > 0 && _Exponent() < 31; }
    bool isDenormalized() const { return _Exponent() == 0 && _Fraction() != 0; }
    bool isZero() const { return (_h & 0x7fffu) == 0; }
    bool isNan() const { return _Exponent() == 31 && _Fraction() != 0; }
    bool isInfinity() const { return _Exponent() == 31 && _Fraction() == 0; }
    bool isNegative() const { return (_h & 0x8000u) != 0; }

    static half posInf() { return _FromBits(0x7c00); }
    static half negInf() { return _FromBits(0xfc00); }
    static half qNan() { return _FromBits(0x7fff); }
    static half sNan() { return _FromBits(0x7dff); }

    /// The 16 bits as stored.
    unsigned short bits() const { return _h; }
    void setBits(unsigned short bits) { _h = bits; }

private:
    static half _FromBits(uint16_t bits)
    {
        half h;
        h._h = bits;
        return h;
    }
    VESK_USD_API static uint16_t _FromFloat(float f);
    VESK_USD_API static float _ToFloat(uint16_t bits);

    unsigned _Exponent() const { return (_h >> 10) & 0x1fu; }
    unsigned _Fraction() const { return _h & 0x3ffu; }

    uint16_t _h;
};

/// Writes the value as a float is written.
VESK_USD_API std::ostream& operator<<(std::ostream& os, half h);
/// Reads a float and rounds it.
VESK_USD_API std::istream& operator>>(std::istream& is, half& h);

inline size_t hash_value(const half h) { return h.isZero() ? 0 : h.bits(); }
/// Keeps a half from being hashed through its conversion to float.
size_t hash_value(float) = delete;

} // namespace pxr_half

using GfHalf = pxr_half::half;

template <>
struct GfIsFloatingPoint<GfHalf> : public std::integral_constant<bool, true>
{};

PXR_NAMESPACE_CLOSE_SCOPE

namespace std {

template <>
class numeric_limits<PXR_NS::pxr_half::half>
{
    using half = PXR_NS::pxr_half::half;

public:
    static const bool is_specialized = true;
    static const bool is_signed = true;
    static const bool is_integer = false;
    static const bool is_exact = false;
    static const bool has_infinity = true;
    static const bool has_quiet_NaN = true;
    static const bool has_signaling_NaN = true;
    static const float_denorm_style has_denorm = denorm_present;
    static const bool has_denorm_loss = false;
    static const bool is_iec559 = false;
    static const bool is_bounded = false;
    static const bool is_modulo = false;
    static const bool traps = true;
    static const bool tinyness_before = false;
    static const float_round_style round_style = round_to_nearest;

    static const int digits = 11;
    static const int digits10 = 3;
    static constexpr int max_digits10 = 5;
    static const int radix = 2;
    static const int min_exponent = -13;
    static const int min_exponent10 = -4;
    static const int max_exponent = 16;
    static const int max_exponent10 = 4;

    static half min() noexcept { return 6.103515625e-05f; }
    static half max() noexcept { return 65504.0f; }
    static half lowest() noexcept { return -65504.0f; }
    static half epsilon() noexcept { return 0.0009765625f; }
    static half round_error() noexcept { return 0.00048828125f; }
    static half infinity() noexcept { return half::posInf(); }
    static half quiet_NaN() noexcept { return half::qNan(); }
    static half signaling_NaN() noexcept { return half::sNan(); }
    static half denorm_min() noexcept { return 5.9604644775390625e-08f; }
};

} // namespace std
