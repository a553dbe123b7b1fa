#pragma once

/// GfRotation: a rotation about an axis.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quaternion.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// An axis of unit length and an angle in degrees, counter-clockwise for who looks against the axis. In a
/// product r1 * r2, r1 applies first.
class VESK_USD_API GfRotation
{
public:
    /// Leaves the rotation undefined.
    GfRotation() = default;
    GfRotation(const GfVec3d& axis, double angle) { SetAxisAngle(axis, angle); }
    GfRotation(const GfQuaternion& quaternion) { SetQuaternion(quaternion); }
    GfRotation(const GfQuatd& quat) { SetQuat(quat); }
    /// Rotates one direction into another.
    GfRotation(const GfVec3d& rotateFrom, const GfVec3d& rotateTo) { SetRotateInto(rotateFrom, rotateTo); }

    /// Sets axis (normalized) and angle in degrees (as it is).
    GfRotation& SetAxisAngle(const GfVec3d& axis, double angle)
    {
        _axis = axis;
        _angle = angle;
        if (!GfIsClose(_axis * _axis, 1.0, 1e-10)) {
            _axis.Normalize();
        }
        return *this;
    }
    /// Sets the rotation of a unit quaternion; the identity where it has no axis.
    GfRotation& SetQuat(const GfQuatd& quat);
    GfRotation& SetQuaternion(const GfQuaternion& quat)
    {
        return SetQuat(GfQuatd(quat.GetReal(), quat.GetImaginary()));
    }
    /// Rotates one direction into another by the shortest way; neither needs unit length.
    GfRotation& SetRotateInto(const GfVec3d& rotateFrom, const GfVec3d& rotateTo);
    /// Sets 0 degrees about +x.
    GfRotation& SetIdentity()
    {
        _axis.Set(1.0, 0.0, 0.0);
        _angle = 0.0;
        return *this;
    }

    const GfVec3d& GetAxis() const { return _axis; }
    /// Returns the angle in degrees.
    double GetAngle() const { return _angle; }
    GfQuaternion GetQuaternion() const
    {
        const GfQuatd quat = GetQuat();
        return GfQuaternion(quat.GetReal(), quat.GetImaginary());
    }
    GfQuatd GetQuat() const;
    GfRotation GetInverse() const { return GfRotation(_axis, -_angle); }

    /// Returns the angles in degrees about three axes, the last of which turns first; warns if the axes are
    /// not orthogonal.
    GfVec3d Decompose(const GfVec3d& axis0, const GfVec3d& axis1, const GfVec3d& axis2) const;

    /// Splits a rotation into twist, front-back, left-right and swing angles, in radians; at most one of the
    /// four may be null and is then 0. With useHint the values passed in choose the nearest of the equivalent
    /// solutions; swShift is a swing that is applied afterwards (with all four angles only). handedness: -1
    /// or 1.
    static void DecomposeRotation(const GfMatrix4d& rot, const GfVec3d& TwAxis, const GfVec3d& FBAxis,
                                  const GfVec3d& LRAxis, double handedness, double* thetaTw, double* thetaFB,
                                  double* thetaLR, double* thetaSw = nullptr, bool useHint = false,
                                  const double* swShift = nullptr);

    /// Returns the rotation about axis that brings v1 onto v2, both projected onto the plane of the axis.
    static GfRotation RotateOntoProjected(const GfVec3d& v1, const GfVec3d& v2, const GfVec3d& axis);

    /// Replaces Euler angles, in radians, by the equivalent ones that are nearest to the targets; a null
    /// angle counts as 0.
    static void MatchClosestEulerRotation(double targetTw, double targetFB, double targetLR, double targetSw,
                                          double* thetaTw, double* thetaFB, double* thetaLR, double* thetaSw);

    GfVec3d TransformDir(const GfVec3d& vec) const;

    friend inline size_t hash_value(const GfRotation& r) { return Gf_HashCombine(r._axis, r._angle); }

    /// Compares axis and angle, not what they do: 0 and 360 degrees differ.
    bool operator==(const GfRotation& r) const { return _axis == r._axis && _angle == r._angle; }
    bool operator!=(const GfRotation& r) const { return !(*this == r); }

    /// Appends a rotation; keeps the axis where the product is the identity.
    GfRotation& operator*=(const GfRotation& r);
    GfRotation& operator*=(double scale)
    {
        _angle *= scale;
        return *this;
    }
    GfRotation& operator/=(double scale)
    {
        _angle /= scale;
        return *this;
    }
    friend GfRotation operator*(const GfRotation& r1, const GfRotation& r2) { return GfRotation(r1) *= r2; }
    friend GfRotation operator*(const GfRotation& r, double scale) { return GfRotation(r) *= scale; }
    friend GfRotation operator*(double scale, const GfRotation& r) { return GfRotation(r) *= scale; }
    friend GfRotation operator/(const GfRotation& r, double scale) { return GfRotation(r) /= scale; }

private:
    GfVec3d _axis;
    double _angle;
};

/// Writes [(axis) angle].
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfRotation& r);

PXR_NAMESPACE_CLOSE_SCOPE
