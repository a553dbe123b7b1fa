#pragma once

/// GfInterval: a mathematical interval with open or closed ends.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/math.h>
#include <pxr/pxr.h>

#include <cfloat>
#include <cmath>
#include <iosfwd>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

/// The numbers between two ends, each of which belongs to it (closed) or not (open). Infinite ends are open.
class GfInterval
{
public:
    /// Makes the empty interval (0, 0).
    GfInterval() : _min(0.0, false), _max(0.0, false) {}
    /// Makes [val, val].
    GfInterval(double val) : _min(val, true), _max(val, true) {}
    GfInterval(double min, double max, bool minClosed = true, bool maxClosed = true)
        : _min(min, minClosed), _max(max, maxClosed)
    {}

    bool operator==(const GfInterval& rhs) const { return _min == rhs._min && _max == rhs._max; }
    bool operator!=(const GfInterval& rhs) const { return !(*this == rhs); }
    /// Compares the lower, then the upper ends; a closed end is less than an open one.
    bool operator<(const GfInterval& rhs) const
    {
        return _min != rhs._min ? _min < rhs._min : (_max != rhs._max && _max < rhs._max);
    }
    bool operator>(const GfInterval& rhs) const { return rhs < *this; }
    bool operator<=(const GfInterval& rhs) const { return !(rhs < *this); }
    bool operator>=(const GfInterval& rhs) const { return !(*this < rhs); }

    size_t Hash() const { return hash_value(*this); }
    friend inline size_t hash_value(GfInterval const& i)
    {
        return Gf_HashCombine(i._min.value, i._min.closed, i._max.value, i._max.closed);
    }

    /// \name Ends
    /// @{
    double GetMin() const { return _min.value; }
    double GetMax() const { return _max.value; }
    void SetMin(double v) { _min = _Bound(v, _min.closed); }
    void SetMin(double v, bool minClosed) { _min = _Bound(v, minClosed); }
    void SetMax(double v) { _max = _Bound(v, _max.closed); }
    void SetMax(double v, bool maxClosed) { _max = _Bound(v, maxClosed); }
    bool IsMinClosed() const { return _min.closed; }
    bool IsMaxClosed() const { return _max.closed; }
    bool IsMinOpen() const { return !_min.closed; }
    bool IsMaxOpen() const { return !_max.closed; }
    bool IsMaxFinite() const { return !std::isinf(_max.value); }
    bool IsMinFinite() const { return !std::isinf(_min.value); }
    bool IsFinite() const { return IsMaxFinite() && IsMinFinite(); }
    /// @}

    bool IsEmpty() const
    {
        return _min.value > _max.value || (_min.value == _max.value && !(_min.closed && _max.closed));
    }
    /// Returns the width, 0 for an empty interval.
    double GetSize() const { return GfMax(0.0, _max.value - _min.value); }
    double Size() const { return GetSize(); }

    bool Contains(double d) const
    {
        return (d > _min.value || (d == _min.value && _min.closed)) &&
               (d < _max.value || (d == _max.value && _max.closed));
    }
    bool In(double d) const { return Contains(d); }
    /// Returns whether the intersection with i is i.
    bool Contains(const GfInterval& i) const { return (*this & i) == i; }
    bool Intersects(const GfInterval& i) const { return !(*this & i).IsEmpty(); }

    /// Intersects; an empty interval stays as it is.
    GfInterval& operator&=(const GfInterval& rhs)
    {
        if (IsEmpty()) {
            return *this;
        }
        if (rhs.IsEmpty()) {
            return *this = GfInterval();
        }
        if (_min.value < rhs._min.value) {
            _min = rhs._min;
        } else if (_min.value == rhs._min.value) {
            _min.closed &= rhs._min.closed;
        }
        if (_max.value > rhs._max.value) {
            _max = rhs._max;
        } else if (_max.value == rhs._max.value) {
            _max.closed &= rhs._max.closed;
        }
        return *this;
    }
    /// Grows to the smallest interval around both.
    GfInterval& operator|=(const GfInterval& rhs)
    {
        if (IsEmpty()) {
            return *this = rhs;
        }
        if (rhs.IsEmpty()) {
            return *this;
        }
        if (_min.value > rhs._min.value) {
            _min = rhs._min;
        } else if (_min.value == rhs._min.value) {
            _min.closed |= rhs._min.closed;
        }
        if (_max.value < rhs._max.value) {
            _max = rhs._max;
        } else if (_max.value == rhs._max.value) {
            _max.closed |= rhs._max.closed;
        }
        return *this;
    }
    GfInterval operator|(const GfInterval& rhs) const { return GfInterval(*this) |= rhs; }
    GfInterval operator&(const GfInterval& rhs) const { return GfInterval(*this) &= rhs; }

    /// \name Interval arithmetic: the range of the results for all values of the operands
    /// @{
    GfInterval& operator+=(const GfInterval& rhs)
    {
        if (!rhs.IsEmpty()) {
            _min.value += rhs._min.value;
            _max.value += rhs._max.value;
            _min.closed &= rhs._min.closed;
            _max.closed &= rhs._max.closed;
        }
        return *this;
    }
    GfInterval& operator-=(const GfInterval& rhs) { return *this += -rhs; }
    GfInterval operator-() const { return GfInterval(-_max.value, -_min.value, _max.closed, _min.closed); }
    GfInterval& operator*=(const GfInterval& rhs)
    {
        const _Bound a = _min * rhs._min;
        const _Bound b = _min * rhs._max;
        const _Bound c = _max * rhs._min;
        const _Bound d = _max * rhs._max;
        _max = _Max(_Max(a, b), _Max(c, d));
        _min = _Min(_Min(a, b), _Min(c, d));
        return *this;
    }
    GfInterval operator+(const GfInterval& rhs) const { return GfInterval(*this) += rhs; }
    GfInterval operator-(const GfInterval& rhs) const { return GfInterval(*this) -= rhs; }
    GfInterval operator*(const GfInterval& rhs) const { return GfInterval(*this) *= rhs; }
    /// @}

    /// Returns (-inf, inf).
    static GfInterval GetFullInterval()
    {
        constexpr double kInfinity = std::numeric_limits<double>::infinity();
        return GfInterval(-kInfinity, kInfinity, false, false);
    }

private:
    struct _Bound
    {
        double value;
        bool closed;

        _Bound(double val, bool isClosed) : value(val), closed(isClosed && !std::isinf(val)) {}
        bool operator==(const _Bound& rhs) const { return value == rhs.value && closed == rhs.closed; }
        bool operator!=(const _Bound& rhs) const { return !(*this == rhs); }
        bool operator<(const _Bound& rhs) const
        {
            return value < rhs.value || (value == rhs.value && closed && !rhs.closed);
        }
        _Bound operator*(const _Bound& rhs) const { return _Bound(value * rhs.value, closed && rhs.closed); }
    };

    /// The lower of two lower ends, the closed one of equals.
    static const _Bound& _Min(const _Bound& a, const _Bound& b) { return a < b ? a : b; }
    /// The upper of two upper ends, the closed one of equals.
    static const _Bound& _Max(const _Bound& a, const _Bound& b)
    {
        return (a.value < b.value || (a.value == b.value && !a.closed && b.closed)) ? b : a;
    }

    _Bound _min;
    _Bound _max;
};

/// Writes (min, max) with brackets for closed ends.
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfInterval& i);

PXR_NAMESPACE_CLOSE_SCOPE
