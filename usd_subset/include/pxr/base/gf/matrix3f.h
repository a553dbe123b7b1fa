#pragma once

/// GfMatrix3f: a 3 x 3 matrix of floats.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/matrix3Base.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfMatrix<class GfMatrix3f>
{
    static const bool value = true;
};

class VESK_USD_API GfMatrix3f;

/// A 3 x 3 matrix of floats.
class VESK_USD_API GfMatrix3f : public Gf_Matrix3Base<GfMatrix3f, float>
{
public:
    /// Leaves the components undefined.
    GfMatrix3f() = default;
    /// Sets the components, row by row.
    GfMatrix3f(float m00, float m01, float m02, float m10, float m11, float m12, float m20, float m21,
               float m22)
    {
        Set(m00, m01, m02, m10, m11, m12, m20, m21, m22);
    }
    GfMatrix3f(const float m[3][3]) { Set(m); }
    /// Makes s times the identity.
    explicit GfMatrix3f(float s) { SetDiagonal(s); }
    explicit GfMatrix3f(int s) { SetDiagonal(float(s)); }
    /// Puts v on the diagonal.
    explicit GfMatrix3f(const GfVec3f& v) { SetDiagonal(v); }
    /// Takes rows that may be too short or too few: the rest is that of the identity.
    explicit GfMatrix3f(const std::vector<std::vector<double>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix3f(const std::vector<std::vector<float>>& v) { _SetRows(v.data(), v.size()); }
    GfMatrix3f(const GfRotation& rot) { SetRotate(rot); }
    explicit GfMatrix3f(const GfQuatf& rot) { SetRotate(rot); }
    /// Rounds.
    explicit GfMatrix3f(const class GfMatrix3d& m);
};

/// Returns whether all components differ by less than tolerance.
VESK_USD_API bool GfIsClose(GfMatrix3f const& m1, GfMatrix3f const& m2, double tolerance);

/// Writes ( (row), (row), (row) ).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfMatrix3f const& m);

PXR_NAMESPACE_CLOSE_SCOPE
