#pragma once

/// Spherical interpolation, for all quaternion classes.

#include <pxr/base/gf/math.h>
#include <pxr/pxr.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

/// Interpolates along the shorter arc; linearly, without normalizing, where the quaternions nearly agree.
/// Angle is the type in which the angle between them is kept.
template <class Angle, class Quat>
Quat Gf_Slerp(double alpha, const Quat& q0, const Quat& q1)
{
    double cosTheta = q0.GetImaginary() * q1.GetImaginary() + q0.GetReal() * q1.GetReal();
    const bool flip = cosTheta < 0.0;
    if (flip) {
        cosTheta = -cosTheta;
    }
    double scale0 = 1.0 - alpha;
    double scale1 = alpha;
    if (1.0 - cosTheta > 0.00001) {
        const Angle theta(static_cast<Angle>(std::acos(cosTheta)));
        const Angle sinTheta(static_cast<Angle>(GfSin(theta)));
        scale0 = std::sin((1.0 - alpha) * theta) / sinTheta;
        scale1 = std::sin(alpha * theta) / sinTheta;
    }
    return scale0 * q0 + (flip ? -scale1 : scale1) * q1;
}

PXR_NAMESPACE_CLOSE_SCOPE
