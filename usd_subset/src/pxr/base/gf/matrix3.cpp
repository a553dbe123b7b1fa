#include "pxr/base/gf/matrixIo.h"
#include "pxr/base/gf/matrixRotation.h"

#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix3f.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quaternion.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/rotation.h>

PXR_NAMESPACE_OPEN_SCOPE

template <class Mat, class Scalar>
Mat Gf_Matrix3Base<Mat, Scalar>::GetInverse(double* detPtr, double eps) const
{
    const auto& m = this->_mtx;
    const double a00 = m[0][0], a01 = m[0][1], a02 = m[0][2];
    const double a10 = m[1][0], a11 = m[1][1], a12 = m[1][2];
    const double a20 = m[2][0], a21 = m[2][1], a22 = m[2][2];
    const double det = -(a02 * a11 * a20) + a01 * a12 * a20 + a02 * a10 * a21 - a00 * a12 * a21 -
                       a01 * a10 * a22 + a00 * a11 * a22;
    if (detPtr) {
        *detPtr = det;
    }
    Mat inverse;
    if (!(GfAbs(det) > eps)) {
        return inverse.SetScale(Scalar(FLT_MAX));
    }
    const double rcp = 1.0 / det;
    return inverse.Set(
        (-(a12 * a21) + a11 * a22) * rcp, (a02 * a21 - a01 * a22) * rcp, (-(a02 * a11) + a01 * a12) * rcp,
        (a12 * a20 - a10 * a22) * rcp, (-(a02 * a20) + a00 * a22) * rcp, (a02 * a10 - a00 * a12) * rcp,
        (-(a11 * a20) + a10 * a21) * rcp, (a01 * a20 - a00 * a21) * rcp, (-(a01 * a10) + a00 * a11) * rcp);
}

template <class Mat, class Scalar>
double Gf_Matrix3Base<Mat, Scalar>::GetDeterminant() const
{
    const auto& m = this->_mtx;
    return m[0][0] * m[1][1] * m[2][2] + m[0][1] * m[1][2] * m[2][0] + m[0][2] * m[1][0] * m[2][1] -
           m[0][0] * m[1][2] * m[2][1] - m[0][1] * m[1][0] * m[2][2] - m[0][2] * m[1][1] * m[2][0];
}

template <class Mat, class Scalar>
bool Gf_Matrix3Base<Mat, Scalar>::Orthonormalize(bool issueWarning)
{
    return Gf_OrthonormalizeRows(&this->_mtx, issueWarning);
}

template <class Mat, class Scalar>
Mat Gf_Matrix3Base<Mat, Scalar>::GetOrthonormalized(bool issueWarning) const
{
    Mat result = this->_Self();
    result.Orthonormalize(issueWarning);
    return result;
}

template <class Mat, class Scalar>
Mat& Gf_Matrix3Base<Mat, Scalar>::SetRotate(const _Quat& rot)
{
    Gf_SetRotation(&this->_mtx, rot.GetReal(), rot.GetImaginary());
    return this->_Self();
}

template <class Mat, class Scalar>
Mat& Gf_Matrix3Base<Mat, Scalar>::SetRotate(const GfRotation& rot)
{
    const GfQuaternion quat = rot.GetQuaternion();
    Gf_SetRotation(&this->_mtx, static_cast<Scalar>(quat.GetReal()), _Vec3(quat.GetImaginary()));
    return this->_Self();
}

template <class Mat, class Scalar>
GfQuaternion Gf_Matrix3Base<Mat, Scalar>::ExtractRotationQuaternion() const
{
    return Gf_GetRotationQuat<GfQuaternion, double, GfVec3d>(this->_mtx, 1);
}

template <class Mat, class Scalar>
GfRotation Gf_Matrix3Base<Mat, Scalar>::ExtractRotation() const
{
    return GfRotation(ExtractRotationQuaternion());
}

template <class Mat, class Scalar>
auto Gf_Matrix3Base<Mat, Scalar>::DecomposeRotation(const _Vec3& axis0, const _Vec3& axis1,
                                                    const _Vec3& axis2) const -> _Vec3
{
    return _Vec3(ExtractRotation().Decompose(axis0, axis1, axis2));
}

template class Gf_Matrix3Base<GfMatrix3d, double>;
template class Gf_Matrix3Base<GfMatrix3f, float>;

GF_DEFINE_MATRIX(GfMatrix3d, GfMatrix3f)
GF_DEFINE_MATRIX(GfMatrix3f, GfMatrix3d)

PXR_NAMESPACE_CLOSE_SCOPE
