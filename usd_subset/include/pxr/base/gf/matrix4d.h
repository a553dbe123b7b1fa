#pragma once

/// GfMatrix4d: a 4 x 4 matrix of doubles.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/matrix4Base.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfMatrix<class GfMatrix4d>
{
    static const bool value = true;
};

class VESK_USD_API GfMatrix4d;

/// A 4 x 4 matrix of doubles.
class VESK_USD_API GfMatrix4d : public Gf_Matrix4Base<GfMatrix4d, double>
{
public:
    /// Leaves the components undefined.
    GfMatrix4d() = default;
    /// Sets the components, row by row.
    GfMatrix4d(double m00, double m01, double m02, double m03, double m10, double m11, double m12, double m13,
               double m20, double m21, double m22, double m23, double m30, double m31, double m32, double m33)
    {
        Set(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33);
    }
    GfMatrix4d(const double m[4][4]) { Set(m); }
    /// Makes s times the identity.
    explicit GfMatrix4d(double s) { SetDiagonal(s); }
    /// Puts v on the diagonal.
    explicit GfMatrix4d(const GfVec4d& v) { SetDiagonal(v); }
    /// Takes rows that may be too short or too few: the rest is that of the identity.
    explicit GfMatrix4d(const std::vector<std::vector<double>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix4d(const std::vector<std::vector<float>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix4d(const std::vector<double>& r0, const std::vector<double>& r1,
                        const std::vector<double>& r2, const std::vector<double>& r3)
    {
        const std::vector<double> rows[] = {r0, r1, r2, r3};
        _SetRows(rows, 4);
    }
    explicit GfMatrix4d(const std::vector<float>& r0, const std::vector<float>& r1,
                        const std::vector<float>& r2, const std::vector<float>& r3)
    {
        const std::vector<float> rows[] = {r0, r1, r2, r3};
        _SetRows(rows, 4);
    }
    GfMatrix4d(const GfRotation& rotate, const GfVec3d& translate) { SetTransform(rotate, translate); }
    GfMatrix4d(const GfMatrix3d& rotmx, const GfVec3d& translate) { SetTransform(rotmx, translate); }
    /// Converts each component.
    explicit GfMatrix4d(const class GfMatrix4f& m);
};

/// Returns whether all components differ by less than tolerance.
VESK_USD_API bool GfIsClose(GfMatrix4d const& m1, GfMatrix4d const& m2, double tolerance);

/// Writes ( (row), (row), (row), (row) ).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfMatrix4d const& m);

PXR_NAMESPACE_CLOSE_SCOPE
