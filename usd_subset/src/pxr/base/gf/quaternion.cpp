#include "pxr/base/gf/slerp.h"

#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/base/gf/quaternion.h>

#include <cmath>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

double GfQuaternion::GetLength() const { return std::sqrt(_GetLengthSquared()); }

GfQuaternion GfQuaternion::GetNormalized(double eps) const
{
    GfQuaternion normalized(*this);
    normalized.Normalize(eps);
    return normalized;
}

double GfQuaternion::Normalize(double eps)
{
    const double length = GetLength();
    if (length < eps) {
        *this = GetIdentity();
    } else {
        *this /= length;
    }
    return length;
}

GfQuaternion GfQuaternion::GetInverse() const
{
    return GfQuaternion(_real, -_imaginary) / _GetLengthSquared();
}

GfQuaternion& GfQuaternion::operator*=(const GfQuaternion& q)
{
    const double r1 = _real;
    const double r2 = q._real;
    const GfVec3d i1 = _imaginary;
    const GfVec3d i2 = q._imaginary;
    _real = r1 * r2 - GfDot(i1, i2);
    _imaginary.Set(r1 * i2[0] + r2 * i1[0] + (i1[1] * i2[2] - i1[2] * i2[1]),
                   r1 * i2[1] + r2 * i1[1] + (i1[2] * i2[0] - i1[0] * i2[2]),
                   r1 * i2[2] + r2 * i1[2] + (i1[0] * i2[1] - i1[1] * i2[0]));
    return *this;
}

GfQuaternion GfSlerp(double alpha, const GfQuaternion& q0, const GfQuaternion& q1)
{
    return Gf_Slerp<double>(alpha, q0, q1);
}

GfQuaternion GfSlerp(const GfQuaternion& q0, const GfQuaternion& q1, double alpha)
{
    return Gf_Slerp<double>(alpha, q0, q1);
}

std::ostream& operator<<(std::ostream& out, const GfQuaternion& q)
{
    return out << '(' << Gf_OstreamHelperP(q.GetReal()) << " + " << q.GetImaginary() << ')';
}

PXR_NAMESPACE_CLOSE_SCOPE
