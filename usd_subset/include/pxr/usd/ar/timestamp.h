#pragma once

/// The time at which an asset was last modified.

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>

#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

/// Seconds since the Unix epoch, or invalid (NaN) where nothing is known.
class ArTimestamp
{
public:
    ArTimestamp() = default;
    explicit ArTimestamp(double time) : _time(time) {}

    bool IsValid() const { return _time == _time; }
    double GetTime() const { return _time; }

    /// Invalid timestamps are equal to each other and less than every valid one.
    friend bool operator==(const ArTimestamp& a, const ArTimestamp& b)
    {
        return a.IsValid() ? a._time == b._time : !b.IsValid();
    }
    friend bool operator!=(const ArTimestamp& a, const ArTimestamp& b) { return !(a == b); }
    friend bool operator<(const ArTimestamp& a, const ArTimestamp& b)
    {
        return b.IsValid() && (!a.IsValid() || a._time < b._time);
    }
    friend bool operator>(const ArTimestamp& a, const ArTimestamp& b) { return b < a; }
    friend bool operator<=(const ArTimestamp& a, const ArTimestamp& b) { return !(b < a); }
    friend bool operator>=(const ArTimestamp& a, const ArTimestamp& b) { return !(a < b); }

private:
    double _time = std::numeric_limits<double>::quiet_NaN();
};

PXR_NAMESPACE_CLOSE_SCOPE
