#pragma once

/// GfSize2: a pair of counts.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// Two sizes; all arithmetic is by component, multiplication too.
class GfSize2
{
public:
    /// Makes zeros.
    GfSize2() : _vec{0, 0} {}
    explicit GfSize2(const GfVec2i& o) { Set(o[0], o[1]); }
    GfSize2(const size_t v[2]) { Set(v); }
    GfSize2(size_t v0, size_t v1) { Set(v0, v1); }

    GfSize2& Set(const size_t v[2]) { return Set(v[0], v[1]); }
    GfSize2& Set(size_t v0, size_t v1)
    {
        _vec[0] = v0;
        _vec[1] = v1;
        return *this;
    }

    size_t& operator[](size_t i) { return _vec[i]; }
    const size_t& operator[](size_t i) const { return _vec[i]; }

    bool operator==(const GfSize2& v) const { return _vec[0] == v._vec[0] && _vec[1] == v._vec[1]; }
    bool operator!=(const GfSize2& v) const { return !(*this == v); }

    GfSize2& operator+=(const GfSize2& v)
    {
        _vec[0] += v._vec[0];
        _vec[1] += v._vec[1];
        return *this;
    }
    GfSize2& operator-=(const GfSize2& v)
    {
        _vec[0] -= v._vec[0];
        _vec[1] -= v._vec[1];
        return *this;
    }
    GfSize2& operator*=(const GfSize2& v)
    {
        _vec[0] *= v._vec[0];
        _vec[1] *= v._vec[1];
        return *this;
    }
    GfSize2& operator*=(int d) { return Set(_vec[0] * d, _vec[1] * d); }
    GfSize2& operator/=(int d) { return Set(_vec[0] / d, _vec[1] / d); }
    friend GfSize2 operator+(const GfSize2& v1, const GfSize2& v2) { return GfSize2(v1) += v2; }
    friend GfSize2 operator-(const GfSize2& v1, const GfSize2& v2) { return GfSize2(v1) -= v2; }
    friend GfSize2 operator*(const GfSize2& v1, const GfSize2& v2) { return GfSize2(v1) *= v2; }
    friend GfSize2 operator*(const GfSize2& v1, int s) { return GfSize2(v1) *= s; }
    friend GfSize2 operator*(int s, const GfSize2& v1) { return GfSize2(v1) *= s; }
    friend GfSize2 operator/(const GfSize2& v1, int s) { return GfSize2(v1) /= s; }

    operator GfVec2i() const { return GfVec2i(static_cast<int>(_vec[0]), static_cast<int>(_vec[1])); }

private:
    size_t _vec[2];
};

/// Writes ( v0 v1 ).
VESK_USD_API std::ostream& operator<<(std::ostream& o, GfSize2 const& v);

PXR_NAMESPACE_CLOSE_SCOPE
