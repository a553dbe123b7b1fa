#pragma once

/// What GfMatrix3d and GfMatrix3f have in common.

#include <pxr/base/gf/matrixBase.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfRotation;
class GfQuaternion;

/// A 3 x 3 matrix; the transformations that it can hold are those that keep the origin in place.
template <class Mat, class Scalar>
class VESK_USD_API Gf_Matrix3Base
    : public Gf_MatrixBase<Mat, Scalar, 3, typename Gf_MatrixTypes<Scalar>::Vec3>
{
    using _Vec3 = typename Gf_MatrixTypes<Scalar>::Vec3;
    using _Quat = typename Gf_MatrixTypes<Scalar>::Quat;

public:
    /// Returns the inverse, or FLT_MAX times the identity where |determinant| is not above eps; sets *det to
    /// the determinant unless det is null.
    Mat GetInverse(double* det = nullptr, double eps = 0) const;
    double GetDeterminant() const;

    /// Makes the rows orthonormal; returns whether the iteration converged, else warns if issueWarning.
    bool Orthonormalize(bool issueWarning = true);
    Mat GetOrthonormalized(bool issueWarning = true) const;

    /// Returns the sign of the determinant: 1 right-handed, -1 left-handed, 0 singular.
    double GetHandedness() const { return GfSgn(GetDeterminant()); }
    bool IsRightHanded() const { return GetHandedness() == 1.0; }
    bool IsLeftHanded() const { return GetHandedness() == -1.0; }

    /// \name Setting the whole matrix to a transformation
    /// @{
    Mat& SetScale(Scalar scaleFactor) { return this->SetDiagonal(scaleFactor); }
    Mat& SetScale(const _Vec3& scaleFactors) { return this->SetDiagonal(scaleFactors); }
    Mat& SetRotate(const _Quat& rot);
    Mat& SetRotate(const GfRotation& rot);
    /// @}

    /// \name The rotation of a matrix that is one; orthonormalize others before
    /// @{
    GfRotation ExtractRotation() const;
    GfQuaternion ExtractRotationQuaternion() const;
    /// Returns the angles in degrees about three orthogonal axes, the last of which turns first.
    _Vec3 DecomposeRotation(const _Vec3& axis0, const _Vec3& axis1, const _Vec3& axis2) const;
    /// @}

protected:
    Gf_Matrix3Base() = default;
};

PXR_NAMESPACE_CLOSE_SCOPE
