#pragma once

/// What the range classes have in common. Use GfRange1d ... GfRange3f; this base has no meaning of its own.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/traits.h>
#include <pxr/pxr.h>

#include <cfloat>
#include <cstddef>
#include <type_traits>

PXR_NAMESPACE_OPEN_SCOPE

/// Component i of a vector, or the number itself.
template <class T>
inline auto& Gf_Component(T& value, size_t i)
{
    if constexpr (std::is_floating_point_v<std::remove_const_t<T>>) {
        (void)i;
        return value;
    } else {
        return value[i];
    }
}

/// An axis-aligned range from a minimum to a maximum of type Bound, both inside. A range whose minimum is
/// above its maximum in any dimension is empty; SetEmpty() makes it [FLT_MAX, -FLT_MAX], which a union
/// replaces.
template <class Range, class Bound, class Scalar, size_t Dim>
class Gf_RangeBase
{
    using _Param = std::conditional_t<Dim == 1, Bound, const Bound&>;

    template <class Other>
    static constexpr bool _isOtherRange = GfIsGfRange<Other>::value && !std::is_same_v<Other, Range>;

public:
    typedef Bound MinMaxType;
    typedef Scalar ScalarType;
    static constexpr size_t dimension = Dim;

    void SetEmpty()
    {
        for (size_t i = 0; i != Dim; ++i) {
            Gf_Component(_min, i) = FLT_MAX;
            Gf_Component(_max, i) = -FLT_MAX;
        }
    }

    _Param GetMin() const { return _min; }
    _Param GetMax() const { return _max; }
    Bound GetSize() const { return _max - _min; }
    /// Returns 0.5 * min + 0.5 * max, which is 0 for a range made by SetEmpty().
    Bound GetMidpoint() const { return static_cast<Scalar>(0.5) * _min + static_cast<Scalar>(0.5) * _max; }
    void SetMin(_Param min) { _min = min; }
    void SetMax(_Param max) { _max = max; }

    bool IsEmpty() const
    {
        for (size_t i = 0; i != Dim; ++i) {
            if (Gf_Component(_min, i) > Gf_Component(_max, i)) {
                return true;
            }
        }
        return false;
    }

    /// \name What lies inside
    /// @{
    bool Contains(_Param point) const
    {
        for (size_t i = 0; i != Dim; ++i) {
            if (!(Gf_Component(point, i) >= Gf_Component(_min, i) &&
                  Gf_Component(point, i) <= Gf_Component(_max, i))) {
                return false;
            }
        }
        return true;
    }
    bool Contains(const Range& range) const { return Contains(range._min) && Contains(range._max); }
    bool IsInside(_Param point) const { return Contains(point); }
    bool IsInside(const Range& range) const { return Contains(range); }
    /// Returns whether the other range has nothing in common with this one.
    bool IsOutside(const Range& range) const
    {
        for (size_t i = 0; i != Dim; ++i) {
            if (Gf_Component(range._max, i) < Gf_Component(_min, i) ||
                Gf_Component(range._min, i) > Gf_Component(_max, i)) {
                return true;
            }
        }
        return false;
    }
    /// @}

    /// \name Union: the smallest range around both
    /// @{
    static Range GetUnion(const Range& a, const Range& b)
    {
        Range res = a;
        res.UnionWith(b);
        return res;
    }
    const Range& UnionWith(const Range& b)
    {
        _FindMin(_min, b._min);
        _FindMax(_max, b._max);
        return _Self();
    }
    const Range& UnionWith(_Param b)
    {
        _FindMin(_min, b);
        _FindMax(_max, b);
        return _Self();
    }
    void ExtendBy(_Param point) { UnionWith(point); }
    void ExtendBy(const Range& range) { UnionWith(range); }
    static Range Union(const Range& a, const Range& b) { return GetUnion(a, b); }
    const Range& Union(const Range& b) { return UnionWith(b); }
    const Range& Union(_Param b) { return UnionWith(b); }
    /// @}

    /// \name Intersection: what both have in common, perhaps nothing
    /// @{
    static Range GetIntersection(const Range& a, const Range& b)
    {
        Range res = a;
        res.IntersectWith(b);
        return res;
    }
    const Range& IntersectWith(const Range& b)
    {
        _FindMax(_min, b._min);
        _FindMin(_max, b._max);
        return _Self();
    }
    static Range Intersection(const Range& a, const Range& b) { return GetIntersection(a, b); }
    const Range& Intersection(const Range& b) { return IntersectWith(b); }
    /// @}

    /// \name Interval arithmetic: the range of the results for all values of the operands
    /// @{
    Range& operator+=(const Range& b)
    {
        _min += b._min;
        _max += b._max;
        return _Self();
    }
    Range& operator-=(const Range& b)
    {
        const Bound subtractedMin = b._min;
        _min -= b._max;
        _max -= subtractedMin;
        return _Self();
    }
    Range& operator*=(double m)
    {
        if (!(m > 0)) {
            const Bound tmp = _min;
            _min = _max;
            _max = tmp;
        }
        _min *= m;
        _max *= m;
        return _Self();
    }
    Range& operator/=(double m) { return *this *= (1.0 / m); }
    Range operator+(const Range& b) const { return Range(_Self()) += b; }
    Range operator-(const Range& b) const { return Range(_Self()) -= b; }
    friend Range operator*(double m, const Range& r) { return Range(r) *= m; }
    friend Range operator*(const Range& r, double m) { return Range(r) *= m; }
    friend Range operator/(const Range& r, double m) { return r * (1.0 / m); }
    /// @}

    friend inline size_t hash_value(const Range& r) { return Gf_HashCombine(r.GetMin(), r.GetMax()); }

    bool operator==(const Range& b) const { return _min == b._min && _max == b._max; }
    bool operator!=(const Range& b) const { return !(*this == b); }
    /// Compares with a range of the other component type, rounding its bounds to this one's.
    template <class Other, std::enable_if_t<_isOtherRange<Other>, int> = 0>
    bool operator==(const Other& other) const
    {
        return _min == Bound(other.GetMin()) && _max == Bound(other.GetMax());
    }
    template <class Other, std::enable_if_t<_isOtherRange<Other>, int> = 0>
    bool operator!=(const Other& other) const
    {
        return !(*this == other);
    }

    /// Returns the squared distance from a point to the range, 0 inside.
    double GetDistanceSquared(_Param p) const
    {
        double dist = 0.0;
        for (size_t i = 0; i != Dim; ++i) {
            if (Gf_Component(p, i) < Gf_Component(_min, i)) {
                dist += GfSqr(Gf_Component(_min, i) - Gf_Component(p, i));
            } else if (Gf_Component(p, i) > Gf_Component(_max, i)) {
                dist += GfSqr(Gf_Component(p, i) - Gf_Component(_max, i));
            }
        }
        return dist;
    }

protected:
    Gf_RangeBase() { SetEmpty(); }
    Gf_RangeBase(_Param min, _Param max) : _min(min), _max(max) {}

    /// The corner that takes the maximum in each dimension whose bit of i is set.
    Bound _Corner(size_t i) const
    {
        Bound corner = _min;
        for (size_t d = 0; d != Dim; ++d) {
            if (i & (size_t(1) << d)) {
                Gf_Component(corner, d) = Gf_Component(_max, d);
            }
        }
        return corner;
    }
    /// The part of the range between corner i and the middle.
    Range _Part(size_t i) const
    {
        const Bound a = _Corner(i);
        const Bound b = .5 * (_min + _max);
        Bound min = a;
        Bound max = a;
        for (size_t d = 0; d != Dim; ++d) {
            Gf_Component(min, d) = GfMin(Gf_Component(a, d), Gf_Component(b, d));
            Gf_Component(max, d) = GfMax(Gf_Component(a, d), Gf_Component(b, d));
        }
        return Range(min, max);
    }

    Range& _Self() { return static_cast<Range&>(*this); }
    Range const& _Self() const { return static_cast<Range const&>(*this); }

    Bound _min;
    Bound _max;

private:
    static void _FindMin(Bound& dest, _Param point)
    {
        for (size_t i = 0; i != Dim; ++i) {
            if (Gf_Component(point, i) < Gf_Component(dest, i)) {
                Gf_Component(dest, i) = Gf_Component(point, i);
            }
        }
    }
    static void _FindMax(Bound& dest, _Param point)
    {
        for (size_t i = 0; i != Dim; ++i) {
            if (Gf_Component(point, i) > Gf_Component(dest, i)) {
                Gf_Component(dest, i) = Gf_Component(point, i);
            }
        }
    }
};

PXR_NAMESPACE_CLOSE_SCOPE
