#include "pxr/base/gf/matrixFactor.h"
#include "pxr/base/gf/matrixIo.h"
#include "pxr/base/gf/matrixRotation.h"

#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix3f.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/matrix4f.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quaternion.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/rotation.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// The six 2 x 2 determinants of two neighbouring columns, by pairs of rows, in double precision.
struct Minors
{
    double y01, y02, y03, y12, y13, y23;

    template <class Data>
    Minors(const Data& m, int c)
        : y01(m[0][c] * m[1][c + 1] - m[1][c] * m[0][c + 1]),
          y02(m[0][c] * m[2][c + 1] - m[2][c] * m[0][c + 1]),
          y03(m[0][c] * m[3][c + 1] - m[3][c] * m[0][c + 1]),
          y12(m[1][c] * m[2][c + 1] - m[2][c] * m[1][c + 1]),
          y13(m[1][c] * m[3][c + 1] - m[3][c] * m[1][c + 1]),
          y23(m[2][c] * m[3][c + 1] - m[3][c] * m[2][c + 1])
    {}
};

// The cofactors of the four elements of a column, from the minors of the two columns on the other side. The
// column beside it, other, is expanded; sign is that of the first cofactor.
template <class Scalar, class Data>
void Cofactors(const Data& m, int other, const Minors& y, bool negate, Scalar z[4])
{
    const Scalar x0 = m[0][other], x1 = m[1][other], x2 = m[2][other], x3 = m[3][other];
    if (negate) {
        z[0] = x2 * y.y13 - x3 * y.y12 - x1 * y.y23;
        z[1] = x0 * y.y23 - x2 * y.y03 + x3 * y.y02;
        z[2] = x1 * y.y03 - x3 * y.y01 - x0 * y.y13;
        z[3] = x0 * y.y12 - x1 * y.y02 + x2 * y.y01;
    } else {
        z[0] = x1 * y.y23 - x2 * y.y13 + x3 * y.y12;
        z[1] = x2 * y.y03 - x3 * y.y02 - x0 * y.y23;
        z[2] = x0 * y.y13 - x1 * y.y03 + x3 * y.y01;
        z[3] = x1 * y.y02 - x2 * y.y01 - x0 * y.y12;
    }
}

} // namespace

template <class Mat, class Scalar>
Mat Gf_Matrix4Base<Mat, Scalar>::GetInverse(double* detPtr, double eps) const
{
    const auto& m = this->_mtx;
    const Minors left(m, 0);
    const Minors right(m, 2);
    // The cofactors of the left two columns are kept in the matrix's precision, those of the right two in
    // double.
    Scalar z0[4], z1[4];
    double z2[4], z3[4];
    Cofactors(m, 1, right, false, z0);
    Cofactors(m, 0, right, true, z1);
    Cofactors(m, 3, left, false, z2);
    Cofactors(m, 2, left, true, z3);

    const double det = m[3][0] * z0[3] + m[2][0] * z0[2] + m[1][0] * z0[1] + m[0][0] * z0[0];
    if (detPtr) {
        *detPtr = det;
    }
    Mat inverse;
    if (!(GfAbs(det) > eps)) {
        return inverse.SetScale(Scalar(FLT_MAX));
    }
    const double rcp = 1.0 / det;
    for (int i = 0; i != 4; ++i) {
        inverse[0][i] = static_cast<Scalar>(z0[i] * rcp);
        inverse[1][i] = static_cast<Scalar>(z1[i] * rcp);
        inverse[2][i] = static_cast<Scalar>(z2[i] * rcp);
        inverse[3][i] = static_cast<Scalar>(z3[i] * rcp);
    }
    return inverse;
}

template <class Mat, class Scalar>
double Gf_Matrix4Base<Mat, Scalar>::_GetDeterminant3(int row1, int row2, int row3, int col1, int col2,
                                                     int col3) const
{
    const auto& m = this->_mtx;
    return m[row1][col1] * m[row2][col2] * m[row3][col3] + m[row1][col2] * m[row2][col3] * m[row3][col1] +
           m[row1][col3] * m[row2][col1] * m[row3][col2] - m[row1][col1] * m[row2][col3] * m[row3][col2] -
           m[row1][col2] * m[row2][col1] * m[row3][col3] - m[row1][col3] * m[row2][col2] * m[row3][col1];
}

template <class Mat, class Scalar>
double Gf_Matrix4Base<Mat, Scalar>::GetDeterminant() const
{
    const auto& m = this->_mtx;
    return -m[0][3] * _GetDeterminant3(1, 2, 3, 0, 1, 2) + m[1][3] * _GetDeterminant3(0, 2, 3, 0, 1, 2) -
           m[2][3] * _GetDeterminant3(0, 1, 3, 0, 1, 2) + m[3][3] * _GetDeterminant3(0, 1, 2, 0, 1, 2);
}

template <class Mat, class Scalar>
bool Gf_Matrix4Base<Mat, Scalar>::Orthonormalize(bool issueWarning)
{
    auto& m = this->_mtx;
    const bool converged = Gf_OrthonormalizeRows(&m, issueWarning);
    if (m[3][3] != 1.0 && !GfIsClose(m[3][3], 0.0, GF_MIN_VECTOR_LENGTH)) {
        for (int c = 0; c != 3; ++c) {
            m[3][c] /= m[3][3];
        }
        m[3][3] = 1.0;
    }
    return converged;
}

template <class Mat, class Scalar>
Mat Gf_Matrix4Base<Mat, Scalar>::GetOrthonormalized(bool issueWarning) const
{
    Mat result = this->_Self();
    result.Orthonormalize(issueWarning);
    return result;
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetScale(const _Vec3& s)
{
    return this->SetDiagonal(typename Gf_MatrixTypes<Scalar>::Vec4(s[0], s[1], s[2], 1));
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetRotateOnly(const _Quat& rot)
{
    Gf_SetRotation(&this->_mtx, rot.GetReal(), rot.GetImaginary());
    return this->_Self();
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetRotateOnly(const GfRotation& rot)
{
    const GfQuaternion quat = rot.GetQuaternion();
    Gf_SetRotation(&this->_mtx, static_cast<Scalar>(quat.GetReal()), _Vec3(quat.GetImaginary()));
    return this->_Self();
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetRotateOnly(const _Matrix3& mx)
{
    for (int r = 0; r != 3; ++r) {
        SetRow3(r, mx.GetRow(r));
    }
    return this->_Self();
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetRotate(const _Quat& rot)
{
    return this->SetIdentity().SetRotateOnly(rot);
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetRotate(const GfRotation& rot)
{
    return this->SetIdentity().SetRotateOnly(rot);
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetRotate(const _Matrix3& mx)
{
    return this->SetIdentity().SetRotateOnly(mx);
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetTranslate(const _Vec3& trans)
{
    return this->SetIdentity().SetTranslateOnly(trans);
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetTranslateOnly(const _Vec3& t)
{
    SetRow3(3, t);
    this->_mtx[3][3] = 1.0;
    return this->_Self();
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetTransform(const GfRotation& rotate, const _Vec3& translate)
{
    return SetRotate(rotate).SetTranslateOnly(translate);
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetTransform(const _Matrix3& rotmx, const _Vec3& translate)
{
    return SetRotate(rotmx).SetTranslateOnly(translate);
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetLookAt(const _Vec3& eyePoint, const _Vec3& centerPoint,
                                            const _Vec3& upDirection)
{
    const _Vec3 view = (centerPoint - eyePoint).GetNormalized();
    const _Vec3 right = GfCross(view, upDirection).GetNormalized();
    const _Vec3 up = GfCross(right, view);
    // The columns are the eye's axes, and the last row brings the eye to the origin.
    this->SetIdentity();
    for (int r = 0; r != 3; ++r) {
        this->_mtx[r][0] = right[r];
        this->_mtx[r][1] = up[r];
        this->_mtx[r][2] = -view[r];
    }
    SetRow3(3, _Vec3(-GfDot(right, eyePoint), -GfDot(up, eyePoint), GfDot(view, eyePoint)));
    return this->_Self();
}

template <class Mat, class Scalar>
Mat& Gf_Matrix4Base<Mat, Scalar>::SetLookAt(const _Vec3& eyePoint, const GfRotation& orientation)
{
    Mat toOrigin, rotateBack;
    toOrigin.SetTranslate(-eyePoint);
    rotateBack.SetRotate(orientation.GetInverse());
    return this->_Self() = toOrigin * rotateBack;
}

template <class Mat, class Scalar>
bool Gf_Matrix4Base<Mat, Scalar>::Factor(Mat* r, _Vec3* s, Mat* u, _Vec3* t, Mat* p, Scalar eps) const
{
    const _Vec3 translation = ExtractTranslation();
    const Gf_MatrixFactors factors(GfMatrix4d(this->_Self()), eps, std::is_same_v<Scalar, float>);
    p->SetIdentity();
    *t = translation;
    *s = _Vec3(factors.scale);
    *r = Mat(factors.scaleOrientation);
    *u = Mat(factors.rotation);
    return !factors.isSingular;
}

template <class Mat, class Scalar>
Mat Gf_Matrix4Base<Mat, Scalar>::RemoveScaleShear() const
{
    Mat scaleOrientation, rotation, projection;
    _Vec3 scale, translation;
    if (!Factor(&scaleOrientation, &scale, &rotation, &translation, &projection)) {
        return this->_Self();
    }
    rotation.Orthonormalize();
    Mat translate;
    return rotation * translate.SetTranslate(translation);
}

template <class Mat, class Scalar>
auto Gf_Matrix4Base<Mat, Scalar>::ExtractRotationQuat() const -> _Quat
{
    return Gf_GetRotationQuat<_Quat, Scalar, _Vec3>(this->_mtx, this->_mtx[3][3]);
}

template <class Mat, class Scalar>
GfRotation Gf_Matrix4Base<Mat, Scalar>::ExtractRotation() const
{
    return GfRotation(ExtractRotationQuat());
}

template <class Mat, class Scalar>
auto Gf_Matrix4Base<Mat, Scalar>::ExtractRotationMatrix() const -> _Matrix3
{
    _Matrix3 rotation;
    for (int r = 0; r != 3; ++r) {
        rotation.SetRow(r, GetRow3(r));
    }
    return rotation;
}

template <class Mat, class Scalar>
auto Gf_Matrix4Base<Mat, Scalar>::DecomposeRotation(const _Vec3& axis0, const _Vec3& axis1,
                                                    const _Vec3& axis2) const -> _Vec3
{
    return _Vec3(ExtractRotation().Decompose(axis0, axis1, axis2));
}

template class Gf_Matrix4Base<GfMatrix4d, double>;
template class Gf_Matrix4Base<GfMatrix4f, float>;

GF_DEFINE_MATRIX(GfMatrix4d, GfMatrix4f)
GF_DEFINE_MATRIX(GfMatrix4f, GfMatrix4d)

PXR_NAMESPACE_CLOSE_SCOPE
