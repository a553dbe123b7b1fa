#pragma once

/// GfSize3: a triple of counts.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/vec3i.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// Three sizes; all arithmetic is by component, multiplication too.
class GfSize3
{
public:
    /// Makes zeros.
    GfSize3() : _vec{0, 0, 0} {}
    explicit GfSize3(const GfVec3i& o) { Set(o[0], o[1], o[2]); }
    GfSize3(const size_t v[3]) { Set(v); }
    GfSize3(size_t v0, size_t v1, size_t v2) { Set(v0, v1, v2); }

    GfSize3& Set(const size_t v[3]) { return Set(v[0], v[1], v[2]); }
    GfSize3& Set(size_t v0, size_t v1, size_t v2)
    {
        _vec[0] = v0;
        _vec[1] = v1;
        _vec[2] = v2;
        return *this;
    }

    size_t& operator[](size_t i) { return _vec[i]; }
    const size_t& operator[](size_t i) const { return _vec[i]; }

    bool operator==(const GfSize3& v) const
    {
        return _vec[0] == v._vec[0] && _vec[1] == v._vec[1] && _vec[2] == v._vec[2];
    }
    bool operator!=(const GfSize3& v) const { return !(*this == v); }

    GfSize3& operator+=(const GfSize3& v)
    {
        _vec[0] += v._vec[0];
        _vec[1] += v._vec[1];
        _vec[2] += v._vec[2];
        return *this;
    }
    GfSize3& operator-=(const GfSize3& v)
    {
        _vec[0] -= v._vec[0];
        _vec[1] -= v._vec[1];
        _vec[2] -= v._vec[2];
        return *this;
    }
    GfSize3& operator*=(const GfSize3& v)
    {
        _vec[0] *= v._vec[0];
        _vec[1] *= v._vec[1];
        _vec[2] *= v._vec[2];
        return *this;
    }
    GfSize3& operator*=(size_t d) { return Set(_vec[0] * d, _vec[1] * d, _vec[2] * d); }
    GfSize3& operator/=(size_t d) { return Set(_vec[0] / d, _vec[1] / d, _vec[2] / d); }
    friend GfSize3 operator+(const GfSize3& v1, const GfSize3& v2) { return GfSize3(v1) += v2; }
    friend GfSize3 operator-(const GfSize3& v1, const GfSize3& v2) { return GfSize3(v1) -= v2; }
    friend GfSize3 operator*(const GfSize3& v1, const GfSize3& v2) { return GfSize3(v1) *= v2; }
    friend GfSize3 operator*(const GfSize3& v1, size_t s) { return GfSize3(v1) *= s; }
    friend GfSize3 operator*(size_t s, const GfSize3& v1) { return GfSize3(v1) *= s; }
    friend GfSize3 operator/(const GfSize3& v1, size_t s) { return GfSize3(v1) /= s; }

    operator GfVec3i() const
    {
        return GfVec3i(static_cast<int>(_vec[0]), static_cast<int>(_vec[1]), static_cast<int>(_vec[2]));
    }

private:
    size_t _vec[3];
};

/// Writes ( v0 v1 v2 ).
VESK_USD_API std::ostream& operator<<(std::ostream& o, GfSize3 const& v);

PXR_NAMESPACE_CLOSE_SCOPE
