#pragma once

/// GfMatrix2f: a 2 x 2 matrix of floats.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/matrixBase.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfMatrix<class GfMatrix2f>
{
    static const bool value = true;
};

class VESK_USD_API GfMatrix2f;

/// A 2 x 2 matrix of floats.
class VESK_USD_API GfMatrix2f : public Gf_MatrixBase<GfMatrix2f, float, 2, GfVec2f>
{
public:
    /// Leaves the components undefined.
    GfMatrix2f() = default;
    /// Sets the components, row by row.
    GfMatrix2f(float m00, float m01, float m10, float m11) { Set(m00, m01, m10, m11); }
    GfMatrix2f(const float m[2][2]) { Set(m); }
    /// Makes s times the identity.
    explicit GfMatrix2f(float s) { SetDiagonal(s); }
    explicit GfMatrix2f(int s) { SetDiagonal(float(s)); }
    /// Puts v on the diagonal.
    explicit GfMatrix2f(const GfVec2f& v) { SetDiagonal(v); }
    /// Takes rows that may be too short or too few: the rest is that of the identity.
    explicit GfMatrix2f(const std::vector<std::vector<double>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix2f(const std::vector<std::vector<float>>& v) { _SetRows(v.data(), v.size()); }
    /// Rounds.
    explicit GfMatrix2f(const class GfMatrix2d& m);

    /// Returns the inverse, or FLT_MAX times the identity where |determinant| is not above eps; sets *det to
    /// the determinant unless det is null.
    GfMatrix2f GetInverse(double* det = nullptr, double eps = 0) const;
    double GetDeterminant() const;
};

/// Returns whether all components differ by less than tolerance.
VESK_USD_API bool GfIsClose(GfMatrix2f const& m1, GfMatrix2f const& m2, double tolerance);

/// Writes ( (row), (row) ).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfMatrix2f const& m);

PXR_NAMESPACE_CLOSE_SCOPE
