#include "pxr/base/gf/matrixIo.h"

#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix2f.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class Mat>
Mat Inverse(Mat const& m, double* detPtr, double eps)
{
    const double det = m.GetDeterminant();
    if (detPtr) {
        *detPtr = det;
    }
    if (!(GfAbs(det) > eps)) {
        return Mat(typename Mat::ScalarType(FLT_MAX));
    }
    const double rcp = 1.0 / det;
    Mat inverse;
    return inverse.Set(m[1][1] * rcp, m[0][1] * -rcp, m[1][0] * -rcp, m[0][0] * rcp);
}

} // namespace

double GfMatrix2d::GetDeterminant() const { return _mtx[0][0] * _mtx[1][1] - _mtx[0][1] * _mtx[1][0]; }
double GfMatrix2f::GetDeterminant() const { return _mtx[0][0] * _mtx[1][1] - _mtx[0][1] * _mtx[1][0]; }
GfMatrix2d GfMatrix2d::GetInverse(double* det, double eps) const { return Inverse(*this, det, eps); }
GfMatrix2f GfMatrix2f::GetInverse(double* det, double eps) const { return Inverse(*this, det, eps); }

GF_DEFINE_MATRIX(GfMatrix2d, GfMatrix2f)
GF_DEFINE_MATRIX(GfMatrix2f, GfMatrix2d)

PXR_NAMESPACE_CLOSE_SCOPE
