#include <pxr/base/gf/math.h>
#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/tf/diagnostic.h>

#include <cmath>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr double kEpsilon = 1e-6;

bool AreOrthogonal(const GfVec3d& a, const GfVec3d& b)
{
    return GfIsClose(GfDot(a, b), 0, GF_MIN_ORTHO_TOLERANCE);
}

} // namespace

GfRotation& GfRotation::SetQuat(const GfQuatd& quat)
{
    const double length = quat.GetImaginary().GetLength();
    if (!(length > GF_MIN_VECTOR_LENGTH)) {
        return SetIdentity();
    }
    const double half = std::acos(GfClamp(quat.GetReal(), -1.0, 1.0));
    return SetAxisAngle(quat.GetImaginary() / length, 2.0 * GfRadiansToDegrees(half));
}

GfRotation& GfRotation::SetRotateInto(const GfVec3d& rotateFrom, const GfVec3d& rotateTo)
{
    constexpr double kParallel = 0.9999999;
    const GfVec3d from = rotateFrom.GetNormalized();
    const GfVec3d to = rotateTo.GetNormalized();
    const double cos = GfDot(from, to);
    if (cos > kParallel) {
        return SetIdentity();
    }
    if (cos < -kParallel) {
        // Half a turn about any axis that is orthogonal to the directions.
        GfVec3d axis = GfCross(from, GfVec3d::XAxis());
        if (axis.GetLength() < 0.00001) {
            axis = GfCross(from, GfVec3d::YAxis());
        }
        return SetAxisAngle(axis.GetNormalized(), 180.0);
    }
    return SetAxisAngle(GfCross(rotateFrom, rotateTo).GetNormalized(), GfRadiansToDegrees(std::acos(cos)));
}

GfQuatd GfRotation::GetQuat() const
{
    double sin, cos;
    GfSinCos(GfDegreesToRadians(_angle) / 2.0, &sin, &cos);
    return GfQuatd(cos, _axis * sin).GetNormalized();
}

GfVec3d GfRotation::Decompose(const GfVec3d& axis0, const GfVec3d& axis1, const GfVec3d& axis2) const
{
    const GfVec3d a0 = axis0.GetNormalized();
    const GfVec3d a1 = axis1.GetNormalized();
    const GfVec3d a2 = axis2.GetNormalized();
    if (!(AreOrthogonal(a0, a1) && AreOrthogonal(a0, a2) && AreOrthogonal(a1, a2))) {
        TF_WARN("Rotation axes are not orthogonal.");
    }
    // In the frame of the three axes they are x, y and z.
    GfMatrix4d toAxes(1.0);
    toAxes.SetColumn(0, GfVec4d(a0[0], a0[1], a0[2], 0));
    toAxes.SetColumn(1, GfVec4d(a1[0], a1[1], a1[2], 0));
    toAxes.SetColumn(2, GfVec4d(a2[0], a2[1], a2[2], 0));
    GfMatrix4d rotation;
    rotation.SetRotate(*this);
    const GfMatrix4d m = toAxes.GetTranspose() * rotation * toAxes;

    // Near gimbal lock only the sum or difference of the outer angles counts: all goes to the first.
    const double cos1 = std::sqrt(m[0][0] * m[0][0] + m[1][0] * m[1][0]);
    const bool locked = !(cos1 > kEpsilon);
    GfVec3d radians(locked ? std::atan2(-m[1][2], m[1][1]) : std::atan2(m[2][1], m[2][2]),
                    std::atan2(-m[2][0], cos1), locked ? 0 : std::atan2(m[1][0], m[0][0]));
    if (GfDot(GfCross(a0, a1), a2) >= 0.0) {
        radians = -radians;
    }
    return GfVec3d(GfRadiansToDegrees(radians[0]), GfRadiansToDegrees(radians[1]),
                   GfRadiansToDegrees(radians[2]));
}

GfRotation GfRotation::RotateOntoProjected(const GfVec3d& v1, const GfVec3d& v2, const GfVec3d& axis)
{
    const GfVec3d unitAxis = axis.GetNormalized();
    const GfVec3d from = (v1 - GfDot(v1, unitAxis) * unitAxis).GetNormalized();
    const GfVec3d to = (v2 - GfDot(v2, unitAxis) * unitAxis).GetNormalized();
    const double sin = GfDot(GfCross(from, to), unitAxis);
    const double cos = GfDot(from, to);
    const bool isDefined = !(std::fabs(sin) < kEpsilon && std::fabs(cos) < kEpsilon);
    return GfRotation(unitAxis, isDefined ? GfRadiansToDegrees(std::atan2(sin, cos)) : 0.0);
}

GfVec3d GfRotation::TransformDir(const GfVec3d& vec) const
{
    return GfMatrix4d().SetRotate(*this).TransformDir(vec);
}

GfRotation& GfRotation::operator*=(const GfRotation& r)
{
    const GfQuaternion q = (r.GetQuaternion() * GetQuaternion()).GetNormalized();
    const double length = q.GetImaginary().GetLength();
    if (length > GF_MIN_VECTOR_LENGTH) {
        _axis = q.GetImaginary() / length;
        _angle = 2.0 * GfRadiansToDegrees(std::acos(q.GetReal()));
    } else {
        _angle = 0.0;
    }
    return *this;
}

std::ostream& operator<<(std::ostream& out, const GfRotation& r)
{
    return out << '[' << r.GetAxis() << " " << Gf_OstreamHelperP(r.GetAngle()) << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
