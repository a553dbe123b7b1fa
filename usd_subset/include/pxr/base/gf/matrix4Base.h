#pragma once

/// What GfMatrix4d and GfMatrix4f have in common.

#include <pxr/base/gf/homogeneous.h>
#include <pxr/base/gf/matrixBase.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfRotation;

/// A 4 x 4 matrix that transforms row vectors (x, y, z, 1): the translation is in the last row.
template <class Mat, class Scalar>
class VESK_USD_API Gf_Matrix4Base
    : public Gf_MatrixBase<Mat, Scalar, 4, typename Gf_MatrixTypes<Scalar>::Vec4>
{
    using _Vec3 = typename Gf_MatrixTypes<Scalar>::Vec3;
    using _Quat = typename Gf_MatrixTypes<Scalar>::Quat;
    using _Matrix3 = typename Gf_MatrixTypes<Scalar>::Matrix3;

public:
    /// Returns the inverse, or a scale by FLT_MAX where |determinant| is not above eps; sets *det to the
    /// determinant unless det is null.
    Mat GetInverse(double* det = nullptr, double eps = 0) const;
    double GetDeterminant() const;

    /// \name The upper left 3 x 3 part
    /// @{
    void SetRow3(int i, const _Vec3& v)
    {
        for (int c = 0; c != 3; ++c) {
            this->_mtx[i][c] = v[c];
        }
    }
    _Vec3 GetRow3(int i) const { return _Vec3(this->_mtx[i]); }
    double GetDeterminant3() const { return _GetDeterminant3(0, 1, 2, 0, 1, 2); }
    /// Returns whether the rows are orthogonal to within GF_MIN_ORTHO_TOLERANCE; they need not be of unit
    /// length.
    bool HasOrthogonalRows3() const
    {
        const _Vec3 axis0(GetRow3(0)), axis1(GetRow3(1)), axis2(GetRow3(2));
        return GfAbs(GfDot(axis0, axis1)) < GF_MIN_ORTHO_TOLERANCE &&
               GfAbs(GfDot(axis0, axis2)) < GF_MIN_ORTHO_TOLERANCE &&
               GfAbs(GfDot(axis1, axis2)) < GF_MIN_ORTHO_TOLERANCE;
    }
    /// Returns the sign of GetDeterminant3(): 1 right-handed, -1 left-handed, 0 singular.
    double GetHandedness() const { return GfSgn(GetDeterminant3()); }
    bool IsRightHanded() const { return GetHandedness() == 1.0; }
    bool IsLeftHanded() const { return GetHandedness() == -1.0; }
    /// Makes its rows orthonormal and divides the translation by m[3][3]; returns whether the iteration
    /// converged, else warns if issueWarning.
    bool Orthonormalize(bool issueWarning = true);
    Mat GetOrthonormalized(bool issueWarning = true) const;
    /// Returns rotation and translation alone, or the matrix itself if it is singular.
    Mat RemoveScaleShear() const;
    /// @}

    /// \name Setting a transformation; ...Only leaves the rest of the matrix as it is
    /// @{
    Mat& SetScale(Scalar scaleFactor) { return SetScale(_Vec3(scaleFactor)); }
    Mat& SetScale(const _Vec3& scaleFactors);
    Mat& SetRotate(const _Quat& rot);
    Mat& SetRotate(const GfRotation& rot);
    Mat& SetRotate(const _Matrix3& mx);
    Mat& SetRotateOnly(const _Quat& rot);
    Mat& SetRotateOnly(const GfRotation& rot);
    Mat& SetRotateOnly(const _Matrix3& mx);
    Mat& SetTranslate(const _Vec3& trans);
    Mat& SetTranslateOnly(const _Vec3& t);
    Mat& SetTransform(const GfRotation& rotate, const _Vec3& translate);
    Mat& SetTransform(const _Matrix3& rotmx, const _Vec3& translate);
    /// @}

    /// \name From world space to the space of an eye that looks along -z with +y up
    /// @{
    Mat& SetLookAt(const _Vec3& eyePoint, const _Vec3& centerPoint, const _Vec3& upDirection);
    Mat& SetLookAt(const _Vec3& eyePoint, const GfRotation& orientation);
    /// @}

    /// Splits the matrix into r * s * transpose(r) * u * t: scales s along the axes r, a rotation u (with the
    /// shear), a translation t; p becomes the identity. Returns false where |determinant| is below eps;
    /// scales below eps are then eps.
    bool Factor(Mat* r, _Vec3* s, Mat* u, _Vec3* t, Mat* p,
                Scalar eps = Scalar(Gf_MatrixTypes<Scalar>::factorEpsilon)) const;

    _Vec3 ExtractTranslation() const { return _Vec3(this->_mtx[3]); }
    /// \name The rotation of a matrix that is one; orthonormalize others before
    /// @{
    GfRotation ExtractRotation() const;
    _Quat ExtractRotationQuat() const;
    _Matrix3 ExtractRotationMatrix() const;
    /// Returns the angles in degrees about three orthogonal axes, the last of which turns first.
    _Vec3 DecomposeRotation(const _Vec3& axis0, const _Vec3& axis1, const _Vec3& axis2) const;
    /// @}

    /// \name Transforming
    /// @{
    /// Takes vec for a point and divides by the resulting w.
    GfVec3d Transform(const GfVec3d& vec) const
    {
        return GfProject(GfVec4d(_Column(vec, 0) + this->_mtx[3][0], _Column(vec, 1) + this->_mtx[3][1],
                                 _Column(vec, 2) + this->_mtx[3][2], _Column(vec, 3) + this->_mtx[3][3]));
    }
    /// Takes vec for a direction: no translation.
    GfVec3d TransformDir(const GfVec3d& vec) const
    {
        return GfVec3d(_Column(vec, 0), _Column(vec, 1), _Column(vec, 2));
    }
    /// Takes vec for a point and the last column for (0, 0, 0, 1).
    GfVec3d TransformAffine(const GfVec3d& vec) const
    {
        return GfVec3d(_Column(vec, 0) + this->_mtx[3][0], _Column(vec, 1) + this->_mtx[3][1],
                       _Column(vec, 2) + this->_mtx[3][2]);
    }
    /// @}

protected:
    Gf_Matrix4Base() = default;

    /// The product of a row vector with the upper three elements of a column.
    template <class Vec>
    auto _Column(const Vec& vec, int c) const
    {
        return vec[0] * this->_mtx[0][c] + vec[1] * this->_mtx[1][c] + vec[2] * this->_mtx[2][c];
    }

private:
    double _GetDeterminant3(int row1, int row2, int row3, int col1, int col2, int col3) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
