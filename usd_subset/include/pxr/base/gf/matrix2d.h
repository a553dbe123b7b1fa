#pragma once

/// GfMatrix2d: a 2 x 2 matrix of doubles.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/matrixBase.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfMatrix<class GfMatrix2d>
{
    static const bool value = true;
};

class VESK_USD_API GfMatrix2d;

/// A 2 x 2 matrix of doubles.
class VESK_USD_API GfMatrix2d : public Gf_MatrixBase<GfMatrix2d, double, 2, GfVec2d>
{
public:
    /// Leaves the components undefined.
    GfMatrix2d() = default;
    /// Sets the components, row by row.
    GfMatrix2d(double m00, double m01, double m10, double m11) { Set(m00, m01, m10, m11); }
    GfMatrix2d(const double m[2][2]) { Set(m); }
    /// Makes s times the identity.
    explicit GfMatrix2d(double s) { SetDiagonal(s); }
    explicit GfMatrix2d(int s) { SetDiagonal(double(s)); }
    /// Puts v on the diagonal.
    explicit GfMatrix2d(const GfVec2d& v) { SetDiagonal(v); }
    /// Takes rows that may be too short or too few: the rest is that of the identity.
    explicit GfMatrix2d(const std::vector<std::vector<double>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix2d(const std::vector<std::vector<float>>& v) { _SetRows(v.data(), v.size()); }
    /// Converts each component.
    explicit GfMatrix2d(const class GfMatrix2f& m);

    /// Returns the inverse, or FLT_MAX times the identity where |determinant| is not above eps; sets *det to
    /// the determinant unless det is null.
    GfMatrix2d GetInverse(double* det = nullptr, double eps = 0) const;
    double GetDeterminant() const;
};

/// Returns whether all components differ by less than tolerance.
VESK_USD_API bool GfIsClose(GfMatrix2d const& m1, GfMatrix2d const& m2, double tolerance);

/// Writes ( (row), (row) ).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfMatrix2d const& m);

PXR_NAMESPACE_CLOSE_SCOPE
