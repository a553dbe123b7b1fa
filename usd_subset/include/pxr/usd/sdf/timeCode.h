#pragma once

/// Times that layer offsets apply to.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <functional>
#include <iosfwd>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

/// A time in the time codes of the layer that holds it; unlike a double it is shifted and scaled by layer
/// offsets when it is read as a value.
class SdfTimeCode
{
public:
    constexpr SdfTimeCode(double time = 0.0) noexcept : _time(time) {}

    constexpr double GetValue() const noexcept { return _time; }
    explicit constexpr operator double() const noexcept { return _time; }

    friend constexpr bool operator==(SdfTimeCode a, SdfTimeCode b) noexcept { return a._time == b._time; }
    friend constexpr bool operator!=(SdfTimeCode a, SdfTimeCode b) noexcept { return a._time != b._time; }
    friend constexpr bool operator<(SdfTimeCode a, SdfTimeCode b) noexcept { return a._time < b._time; }
    friend constexpr bool operator>(SdfTimeCode a, SdfTimeCode b) noexcept { return a._time > b._time; }
    friend constexpr bool operator<=(SdfTimeCode a, SdfTimeCode b) noexcept { return a._time <= b._time; }
    friend constexpr bool operator>=(SdfTimeCode a, SdfTimeCode b) noexcept { return a._time >= b._time; }
    friend constexpr SdfTimeCode operator*(SdfTimeCode a, SdfTimeCode b) noexcept
    {
        return a._time * b._time;
    }
    friend constexpr SdfTimeCode operator/(SdfTimeCode a, SdfTimeCode b) noexcept
    {
        return a._time / b._time;
    }
    friend constexpr SdfTimeCode operator+(SdfTimeCode a, SdfTimeCode b) noexcept
    {
        return a._time + b._time;
    }
    friend constexpr SdfTimeCode operator-(SdfTimeCode a, SdfTimeCode b) noexcept
    {
        return a._time - b._time;
    }

    size_t GetHash() const { return std::hash<double>()(_time); }
    struct Hash
    {
        size_t operator()(const SdfTimeCode& time) const { return time.GetHash(); }
    };
    friend size_t hash_value(const SdfTimeCode& time) { return time.GetHash(); }
    friend void swap(SdfTimeCode& a, SdfTimeCode& b) noexcept { std::swap(a._time, b._time); }

private:
    double _time;
};

VESK_USD_API std::ostream& operator<<(std::ostream& out, const SdfTimeCode& time);

PXR_NAMESPACE_CLOSE_SCOPE
