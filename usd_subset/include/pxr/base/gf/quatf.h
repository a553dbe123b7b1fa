#pragma once

/// GfQuatf: a quaternion of floats.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/quatBase.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfQuat<class GfQuatf>
{
    static const bool value = true;
};

/// Returns the dot product of the four coefficients.
inline float GfDot(const GfQuatf& q1, const GfQuatf& q2);

/// A quaternion with coefficients of type float.
class GfQuatf : public Gf_QuatBase<GfQuatf, float, GfVec3f>
{
public:
    /// Leaves the coefficients undefined.
    GfQuatf() = default;
    /// Makes the imaginary coefficients 0.
    explicit GfQuatf(float realVal) : Gf_QuatBase(realVal, GfVec3f(float(0))) {}
    GfQuatf(float real, float i, float j, float k) : Gf_QuatBase(real, GfVec3f(i, j, k)) {}
    GfQuatf(float real, const GfVec3f& imaginary) : Gf_QuatBase(real, imaginary) {}
    /// Rounds.
    VESK_USD_API explicit GfQuatf(class GfQuatd const& other);
    VESK_USD_API GfQuatf(class GfQuath const& other);
};

inline float GfDot(const GfQuatf& q1, const GfQuatf& q2)
{
    return GfDot(q1.GetImaginary(), q2.GetImaginary()) + q1.GetReal() * q2.GetReal();
}

/// Interpolates along the shorter arc between two rotations.
VESK_USD_API GfQuatf GfSlerp(double alpha, const GfQuatf& q0, const GfQuatf& q1);
VESK_USD_API GfQuatf GfSlerp(const GfQuatf& q0, const GfQuatf& q1, double alpha);

/// Writes (real, i, j, k).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfQuatf const& q);

PXR_NAMESPACE_CLOSE_SCOPE
