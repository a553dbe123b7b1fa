#pragma once

/// GfMatrix3d: a 3 x 3 matrix of doubles.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/matrix3Base.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfMatrix<class GfMatrix3d>
{
    static const bool value = true;
};

class VESK_USD_API GfMatrix3d;

/// A 3 x 3 matrix of doubles.
class VESK_USD_API GfMatrix3d : public Gf_Matrix3Base<GfMatrix3d, double>
{
public:
    /// Leaves the components undefined.
    GfMatrix3d() = default;
    /// Sets the components, row by row.
    GfMatrix3d(double m00, double m01, double m02, double m10, double m11, double m12, double m20, double m21,
               double m22)
    {
        Set(m00, m01, m02, m10, m11, m12, m20, m21, m22);
    }
    GfMatrix3d(const double m[3][3]) { Set(m); }
    /// Makes s times the identity.
    explicit GfMatrix3d(double s) { SetDiagonal(s); }
    explicit GfMatrix3d(int s) { SetDiagonal(double(s)); }
    /// Puts v on the diagonal.
    explicit GfMatrix3d(const GfVec3d& v) { SetDiagonal(v); }
    /// Takes rows that may be too short or too few: the rest is that of the identity.
    explicit GfMatrix3d(const std::vector<std::vector<double>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix3d(const std::vector<std::vector<float>>& v) { _SetRows(v.data(), v.size()); }
    GfMatrix3d(const GfRotation& rot) { SetRotate(rot); }
    explicit GfMatrix3d(const GfQuatd& rot) { SetRotate(rot); }
    /// Converts each component.
    explicit GfMatrix3d(const class GfMatrix3f& m);
};

/// Returns whether all components differ by less than tolerance.
VESK_USD_API bool GfIsClose(GfMatrix3d const& m1, GfMatrix3d const& m2, double tolerance);

/// Writes ( (row), (row), (row) ).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfMatrix3d const& m);

PXR_NAMESPACE_CLOSE_SCOPE
