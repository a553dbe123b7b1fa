#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/timeCode.h>
#include <pxr/usd/usd/api.h>

#include <cmath>
#include <iosfwd>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define USD_TIME_CODE_TOKENS (DEFAULT) (EARLIEST)
// clang-format on
TF_DECLARE_PUBLIC_TOKENS(UsdTimeCodeTokens, VESK_USD_API, USD_TIME_CODE_TOKENS);

/// A time at which values are asked for: a number in the stage's time codes, or the default time, which is no
/// number (kept as NaN) and means the value that does not vary.
class UsdTimeCode
{
public:
    constexpr UsdTimeCode(double t = 0.0) noexcept : _value(t) {}
    constexpr UsdTimeCode(const SdfTimeCode& timeCode) noexcept : _value(timeCode.GetValue()) {}

    /// The lowest time, at which the first sample of each attribute holds.
    static constexpr UsdTimeCode EarliestTime() { return UsdTimeCode(std::numeric_limits<double>::lowest()); }

    static constexpr UsdTimeCode Default() { return UsdTimeCode(std::numeric_limits<double>::quiet_NaN()); }

    /// A step that stays distinguishable for times up to maxValue compressed up to maxCompression times.
    static constexpr double SafeStep(double maxValue = 1e6, double maxCompression = 10.0)
    {
        return std::numeric_limits<double>::epsilon() * maxValue * maxCompression * 2.0;
    }

    bool IsEarliestTime() const { return _value == std::numeric_limits<double>::lowest(); }
    bool IsDefault() const { return std::isnan(_value); }
    bool IsNumeric() const { return !IsDefault(); }

    /// The number; of the default time, an error is posted and NaN returned.
    double GetValue() const
    {
        if (IsDefault()) {
            _IssueGetValueOnDefaultError();
        }
        return _value;
    }

    friend bool operator==(const UsdTimeCode& lhs, const UsdTimeCode& rhs)
    {
        return (lhs.IsDefault() && rhs.IsDefault()) || lhs._value == rhs._value;
    }
    friend bool operator!=(const UsdTimeCode& lhs, const UsdTimeCode& rhs) { return !(lhs == rhs); }

    /// The default time comes before all numbers.
    friend bool operator<(const UsdTimeCode& lhs, const UsdTimeCode& rhs)
    {
        return rhs.IsNumeric() && (lhs.IsDefault() || lhs._value < rhs._value);
    }
    friend bool operator>=(const UsdTimeCode& lhs, const UsdTimeCode& rhs) { return !(lhs < rhs); }
    friend bool operator<=(const UsdTimeCode& lhs, const UsdTimeCode& rhs) { return !(rhs < lhs); }
    friend bool operator>(const UsdTimeCode& lhs, const UsdTimeCode& rhs) { return rhs < lhs; }

    friend size_t hash_value(const UsdTimeCode& time) { return TfHash()(time._value); }

private:
    VESK_USD_API void _IssueGetValueOnDefaultError() const;

    double _value;
};

VESK_USD_API std::ostream& operator<<(std::ostream& os, const UsdTimeCode& time);
VESK_USD_API std::istream& operator>>(std::istream& is, UsdTimeCode& time);

PXR_NAMESPACE_CLOSE_SCOPE
