#pragma once

/// GfQuatd: a quaternion of doubles.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/quatBase.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfQuat<class GfQuatd>
{
    static const bool value = true;
};

/// Returns the dot product of the four coefficients.
inline double GfDot(const GfQuatd& q1, const GfQuatd& q2);

/// A quaternion with coefficients of type double.
class GfQuatd : public Gf_QuatBase<GfQuatd, double, GfVec3d>
{
public:
    /// Leaves the coefficients undefined.
    GfQuatd() = default;
    /// Makes the imaginary coefficients 0.
    explicit GfQuatd(double realVal) : Gf_QuatBase(realVal, GfVec3d(double(0))) {}
    GfQuatd(double real, double i, double j, double k) : Gf_QuatBase(real, GfVec3d(i, j, k)) {}
    GfQuatd(double real, const GfVec3d& imaginary) : Gf_QuatBase(real, imaginary) {}
    VESK_USD_API GfQuatd(class GfQuatf const& other);
    VESK_USD_API GfQuatd(class GfQuath const& other);
};

inline double GfDot(const GfQuatd& q1, const GfQuatd& q2)
{
    return GfDot(q1.GetImaginary(), q2.GetImaginary()) + q1.GetReal() * q2.GetReal();
}

/// Interpolates along the shorter arc between two rotations.
VESK_USD_API GfQuatd GfSlerp(double alpha, const GfQuatd& q0, const GfQuatd& q1);
VESK_USD_API GfQuatd GfSlerp(const GfQuatd& q0, const GfQuatd& q1, double alpha);

/// Writes (real, i, j, k).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfQuatd const& q);

PXR_NAMESPACE_CLOSE_SCOPE
