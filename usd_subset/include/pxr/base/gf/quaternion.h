#pragma once

/// GfQuaternion, the quaternion of doubles that GfRotation and GfMatrix3 speak; GfQuatd is the newer type.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/limits.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// A real coefficient and three imaginary ones.
class VESK_USD_API GfQuaternion
{
public:
    /// Leaves the coefficients undefined.
    GfQuaternion() = default;
    /// Makes the imaginary coefficients 0.
    explicit GfQuaternion(int realVal) : _real(realVal), _imaginary(0) {}
    GfQuaternion(double real, const GfVec3d& imaginary) : _real(real), _imaginary(imaginary) {}

    void SetReal(double real) { _real = real; }
    void SetImaginary(const GfVec3d& imaginary) { _imaginary = imaginary; }
    double GetReal() const { return _real; }
    const GfVec3d& GetImaginary() const { return _imaginary; }

    static GfQuaternion GetZero() { return GfQuaternion(0.0, GfVec3d(0.0)); }
    static GfQuaternion GetIdentity() { return GfQuaternion(1.0, GfVec3d(0.0)); }

    double GetLength() const;
    /// Returns the quaternion of unit length, or the identity where the length is below eps.
    GfQuaternion GetNormalized(double eps = GF_MIN_VECTOR_LENGTH) const;
    /// Makes the length 1, or the quaternion the identity where the length is below eps; returns the length
    /// before.
    double Normalize(double eps = GF_MIN_VECTOR_LENGTH);
    GfQuaternion GetInverse() const;

    friend inline size_t hash_value(const GfQuaternion& q) { return Gf_HashCombine(q._real, q._imaginary); }
    bool operator==(const GfQuaternion& q) const { return _real == q._real && _imaginary == q._imaginary; }
    bool operator!=(const GfQuaternion& q) const { return !(*this == q); }

    /// Multiplies by q from the right.
    GfQuaternion& operator*=(const GfQuaternion& q);
    GfQuaternion& operator*=(double s)
    {
        _real *= s;
        _imaginary *= s;
        return *this;
    }
    GfQuaternion& operator/=(double s) { return *this *= 1.0 / s; }
    GfQuaternion& operator+=(const GfQuaternion& q)
    {
        _real += q._real;
        _imaginary += q._imaginary;
        return *this;
    }
    GfQuaternion& operator-=(const GfQuaternion& q)
    {
        _real -= q._real;
        _imaginary -= q._imaginary;
        return *this;
    }
    friend GfQuaternion operator+(const GfQuaternion& q1, const GfQuaternion& q2)
    {
        return GfQuaternion(q1) += q2;
    }
    friend GfQuaternion operator-(const GfQuaternion& q1, const GfQuaternion& q2)
    {
        return GfQuaternion(q1) -= q2;
    }
    friend GfQuaternion operator*(const GfQuaternion& q1, const GfQuaternion& q2)
    {
        return GfQuaternion(q1) *= q2;
    }
    friend GfQuaternion operator*(const GfQuaternion& q, double s) { return GfQuaternion(q) *= s; }
    friend GfQuaternion operator*(double s, const GfQuaternion& q) { return GfQuaternion(q) *= s; }
    friend GfQuaternion operator/(const GfQuaternion& q, double s) { return GfQuaternion(q) /= s; }

private:
    double _GetLengthSquared() const { return _real * _real + GfDot(_imaginary, _imaginary); }

    double _real;
    GfVec3d _imaginary;
};

/// Interpolates along the shorter arc between two rotations.
VESK_USD_API GfQuaternion GfSlerp(double alpha, const GfQuaternion& q0, const GfQuaternion& q1);
VESK_USD_API GfQuaternion GfSlerp(const GfQuaternion& q0, const GfQuaternion& q1, double alpha);

/// Writes (real + (i, j, k)).
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfQuaternion& q);

inline double GfDot(const GfQuaternion& q1, const GfQuaternion& q2)
{
    return (q1.GetReal() * q2.GetReal()) + GfDot(q1.GetImaginary(), q2.GetImaginary());
}

PXR_NAMESPACE_CLOSE_SCOPE
