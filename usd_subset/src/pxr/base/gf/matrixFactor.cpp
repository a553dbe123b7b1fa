#include "pxr/base/gf/matrixFactor.h"

#include <pxr/base/gf/math.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Finds the eigenvalues and eigenvectors (the columns of vectors) of a symmetric 3 x 3 matrix by Jacobi's
// method: rotations that zero one element above the diagonal at a time.
class Jacobi
{
public:
    explicit Jacobi(const GfMatrix4d& symmetric)
        : vectors(1.0),
          values(symmetric[0][0], symmetric[1][1], symmetric[2][2]),
          _a(symmetric),
          _base(values),
          _change(0)
    {
        constexpr int kMaxSweeps = 50;
        for (int sweep = 0; sweep != kMaxSweeps && !_IsDiagonal(); ++sweep) {
            _Sweep(sweep);
        }
    }

    GfMatrix4d vectors;
    GfVec3d values;

private:
    double _OffDiagonalSum() const { return GfAbs(_a[0][1]) + GfAbs(_a[0][2]) + GfAbs(_a[1][2]); }
    bool _IsDiagonal() const { return _OffDiagonalSum() == 0.0; }

    void _Sweep(int sweep)
    {
        const double threshold = sweep < 3 ? .2 * _OffDiagonalSum() / 9 : 0.0;
        for (int p = 0; p != 2; ++p) {
            for (int q = p + 1; q != 3; ++q) {
                const double tiny = 100.0 * GfAbs(_a[p][q]);
                if (sweep > 3 && _Vanishes(tiny, values[p]) && _Vanishes(tiny, values[q])) {
                    _a[p][q] = 0.0;
                } else if (GfAbs(_a[p][q]) > threshold) {
                    _Rotate(p, q, tiny);
                }
            }
        }
        // Adding up the changes of a sweep first keeps rounding errors small.
        _base += _change;
        values = _base;
        _change = GfVec3d(0);
    }

    static bool _Vanishes(double tiny, double beside) { return GfAbs(beside) + tiny == GfAbs(beside); }

    void _Rotate(int p, int q, double tiny)
    {
        const double t = _Tangent(_a[p][q], values[q] - values[p], tiny);
        const double c = 1.0 / std::sqrt(1.0 + t * t);
        const double s = t * c;
        const double tau = s / (1.0 + c);
        const double h = t * _a[p][q];
        _change[p] -= h;
        _change[q] += h;
        values[p] -= h;
        values[q] += h;
        _a[p][q] = 0.0;
        const int other = 3 - p - q;
        _RotatePair(&_Upper(p, other), &_Upper(q, other), s, tau);
        for (int j = 0; j != 3; ++j) {
            _RotatePair(&vectors[j][p], &vectors[j][q], s, tau);
        }
    }

    // The tangent of the angle that zeroes an element, given the difference of the diagonal elements.
    static double _Tangent(double element, double difference, double tiny)
    {
        if (_Vanishes(tiny, difference)) {
            return element / difference;
        }
        const double theta = 0.5 * difference / element;
        const double t = 1.0 / (GfAbs(theta) + std::sqrt(1.0 + theta * theta));
        return theta < 0.0 ? -t : t;
    }

    static void _RotatePair(double* first, double* second, double s, double tau)
    {
        const double g = *first;
        const double h = *second;
        *first = g - s * (h + g * tau);
        *second = h + s * (g - h * tau);
    }

    // Only the elements above the diagonal are kept up to date.
    double& _Upper(int i, int j) { return i < j ? _a[i][j] : _a[j][i]; }

    GfMatrix4d _a;
    GfVec3d _base;
    GfVec3d _change;
};

} // namespace

Gf_MatrixFactors::Gf_MatrixFactors(const GfMatrix4d& matrix, double eps, bool floatScale)
{
    GfMatrix4d a(1.0);
    for (int i = 0; i != 3; ++i) {
        a.SetRow3(i, matrix.GetRow3(i));
    }
    const double det = a.GetDeterminant3();
    const double sign = det < 0.0 ? -1.0 : 1.0;
    isSingular = det * sign < eps;

    const Jacobi eigen(a * a.GetTranspose());
    scaleOrientation = eigen.vectors;
    GfMatrix4d inverseScale(1.0);
    for (int i = 0; i != 3; ++i) {
        scale[i] = sign * (eigen.values[i] < eps ? eps : std::sqrt(eigen.values[i]));
        if (floatScale) {
            scale[i] = static_cast<float>(scale[i]);
        }
        inverseScale[i][i] = 1.0 / scale[i];
    }
    rotation = scaleOrientation * inverseScale * scaleOrientation.GetTranspose() * a;
}

PXR_NAMESPACE_CLOSE_SCOPE
