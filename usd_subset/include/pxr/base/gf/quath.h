#pragma once

/// GfQuath: a quaternion of halves.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/quatBase.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfQuat<class GfQuath>
{
    static const bool value = true;
};

/// Returns the dot product of the four coefficients.
inline GfHalf GfDot(const GfQuath& q1, const GfQuath& q2);

/// A quaternion with coefficients of type GfHalf.
class GfQuath : public Gf_QuatBase<GfQuath, GfHalf, GfVec3h>
{
public:
    /// Leaves the coefficients undefined.
    GfQuath() = default;
    /// Makes the imaginary coefficients 0.
    explicit GfQuath(GfHalf realVal) : Gf_QuatBase(realVal, GfVec3h(GfHalf(0))) {}
    GfQuath(GfHalf real, GfHalf i, GfHalf j, GfHalf k) : Gf_QuatBase(real, GfVec3h(i, j, k)) {}
    GfQuath(GfHalf real, const GfVec3h& imaginary) : Gf_QuatBase(real, imaginary) {}
    /// Rounds.
    VESK_USD_API explicit GfQuath(class GfQuatd const& other);
    /// Rounds.
    VESK_USD_API explicit GfQuath(class GfQuatf const& other);
};

inline GfHalf GfDot(const GfQuath& q1, const GfQuath& q2)
{
    return GfDot(q1.GetImaginary(), q2.GetImaginary()) + q1.GetReal() * q2.GetReal();
}

/// Interpolates along the shorter arc between two rotations.
VESK_USD_API GfQuath GfSlerp(double alpha, const GfQuath& q0, const GfQuath& q1);
VESK_USD_API GfQuath GfSlerp(const GfQuath& q0, const GfQuath& q1, double alpha);

/// Writes (real, i, j, k).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfQuath const& q);

PXR_NAMESPACE_CLOSE_SCOPE
