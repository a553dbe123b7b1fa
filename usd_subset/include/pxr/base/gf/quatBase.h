#pragma once

/// What the quaternion classes have in common. Use GfQuatd, GfQuatf and GfQuath.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/limits.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/traits.h>
#include <pxr/pxr.h>

#include <cstddef>
#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// A quaternion: a real coefficient and three imaginary ones. As a rotation, it is of unit length, and the
/// product q1 * q2 rotates by q2 first.
template <class Quat, class Scalar, class Vec>
class Gf_QuatBase
{
public:
    typedef Scalar ScalarType;
    typedef Vec ImaginaryType;

    static Quat GetZero() { return Quat(Scalar(0.0)); }
    static Quat GetIdentity() { return Quat(Scalar(1.0)); }

    Scalar GetReal() const { return _real; }
    void SetReal(Scalar real) { _real = real; }
    const Vec& GetImaginary() const { return _imaginary; }
    void SetImaginary(const Vec& imaginary) { _imaginary = imaginary; }
    void SetImaginary(Scalar i, Scalar j, Scalar k) { _imaginary.Set(i, j, k); }

    Scalar GetLength() const { return GfSqrt(_GetLengthSquared()); }
    /// Returns the quaternion of unit length, or the identity where the length is below eps.
    Quat GetNormalized(Scalar eps = GF_MIN_VECTOR_LENGTH) const
    {
        Quat ret(_Self());
        ret.Normalize(eps);
        return ret;
    }
    /// Makes the length 1, or the quaternion the identity where the length is below eps; returns the length
    /// before.
    Scalar Normalize(Scalar eps = GF_MIN_VECTOR_LENGTH)
    {
        const Scalar length = GetLength();
        if (length < eps) {
            _Self() = GetIdentity();
        } else {
            _Self() /= length;
        }
        return length;
    }
    Quat GetConjugate() const { return Quat(_real, -_imaginary); }
    Quat GetInverse() const { return GetConjugate() / _GetLengthSquared(); }

    /// Returns (q * (0, point) * q.GetInverse()).GetImaginary(): the rotated point.
    Vec Transform(const Vec& point) const
    {
        const Scalar imaginarySq = GfDot(_imaginary, _imaginary);
        const Scalar realSq = _real * _real;
        return (2 * GfDot(_imaginary, point) * _imaginary + (realSq - imaginarySq) * point +
                2 * _real * GfCross(_imaginary, point)) /
               (realSq + imaginarySq);
    }

    friend inline size_t hash_value(const Quat& q) { return Gf_HashCombine(q.GetReal(), q.GetImaginary()); }

    Quat operator-() const { return Quat(-_real, -_imaginary); }
    bool operator==(const Quat& q) const { return _real == q._real && _imaginary == q._imaginary; }
    bool operator!=(const Quat& q) const { return !(*this == q); }

    /// Multiplies by q from the right.
    Quat& operator*=(const Quat& q)
    {
        const Scalar r1 = _real;
        const Scalar r2 = q._real;
        const Vec i1 = _imaginary;
        const Vec i2 = q._imaginary;
        _real = r1 * r2 - GfDot(i1, i2);
        _imaginary = Vec(r1 * i2[0] + r2 * i1[0] + (i1[1] * i2[2] - i1[2] * i2[1]),
                         r1 * i2[1] + r2 * i1[1] + (i1[2] * i2[0] - i1[0] * i2[2]),
                         r1 * i2[2] + r2 * i1[2] + (i1[0] * i2[1] - i1[1] * i2[0]));
        return _Self();
    }
    Quat& operator*=(Scalar s)
    {
        _real *= s;
        _imaginary *= s;
        return _Self();
    }
    Quat& operator/=(Scalar s)
    {
        _real /= s;
        _imaginary /= s;
        return _Self();
    }
    Quat& operator+=(const Quat& q)
    {
        _real += q._real;
        _imaginary += q._imaginary;
        return _Self();
    }
    Quat& operator-=(const Quat& q)
    {
        _real -= q._real;
        _imaginary -= q._imaginary;
        return _Self();
    }
    friend Quat operator+(const Quat& q1, const Quat& q2) { return Quat(q1) += q2; }
    friend Quat operator-(const Quat& q1, const Quat& q2) { return Quat(q1) -= q2; }
    friend Quat operator*(const Quat& q1, const Quat& q2) { return Quat(q1) *= q2; }
    friend Quat operator*(const Quat& q, Scalar s) { return Quat(q) *= s; }
    friend Quat operator*(Scalar s, const Quat& q) { return Quat(q) *= s; }
    friend Quat operator/(const Quat& q, Scalar s) { return Quat(q) /= s; }

protected:
    Gf_QuatBase() = default;
    Gf_QuatBase(Scalar real, const Vec& imaginary) : _imaginary(imaginary), _real(real) {}

private:
    Quat& _Self() { return static_cast<Quat&>(*this); }
    Quat const& _Self() const { return static_cast<Quat const&>(*this); }
    Scalar _GetLengthSquared() const { return GfDot(_Self(), _Self()); }

    Vec _imaginary;
    Scalar _real;
};

PXR_NAMESPACE_CLOSE_SCOPE
