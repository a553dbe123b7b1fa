#pragma once

/// GfMatrix4f: a 4 x 4 matrix of floats.

#include <pxr/base/gf/declare.h>
#include <pxr/base/gf/matrix4Base.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

template <>
struct GfIsGfMatrix<class GfMatrix4f>
{
    static const bool value = true;
};

class VESK_USD_API GfMatrix4f;

/// A 4 x 4 matrix of floats.
class VESK_USD_API GfMatrix4f : public Gf_Matrix4Base<GfMatrix4f, float>
{
public:
    /// Leaves the components undefined.
    GfMatrix4f() = default;
    /// Sets the components, row by row.
    GfMatrix4f(float m00, float m01, float m02, float m03, float m10, float m11, float m12, float m13,
               float m20, float m21, float m22, float m23, float m30, float m31, float m32, float m33)
    {
        Set(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33);
    }
    GfMatrix4f(const float m[4][4]) { Set(m); }
    /// Makes s times the identity.
    explicit GfMatrix4f(float s) { SetDiagonal(s); }
    /// Puts v on the diagonal.
    explicit GfMatrix4f(const GfVec4f& v) { SetDiagonal(v); }
    /// Takes rows that may be too short or too few: the rest is that of the identity.
    explicit GfMatrix4f(const std::vector<std::vector<double>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix4f(const std::vector<std::vector<float>>& v) { _SetRows(v.data(), v.size()); }
    explicit GfMatrix4f(const std::vector<double>& r0, const std::vector<double>& r1,
                        const std::vector<double>& r2, const std::vector<double>& r3)
    {
        const std::vector<double> rows[] = {r0, r1, r2, r3};
        _SetRows(rows, 4);
    }
    explicit GfMatrix4f(const std::vector<float>& r0, const std::vector<float>& r1,
                        const std::vector<float>& r2, const std::vector<float>& r3)
    {
        const std::vector<float> rows[] = {r0, r1, r2, r3};
        _SetRows(rows, 4);
    }
    GfMatrix4f(const GfRotation& rotate, const GfVec3f& translate) { SetTransform(rotate, translate); }
    GfMatrix4f(const GfMatrix3f& rotmx, const GfVec3f& translate) { SetTransform(rotmx, translate); }
    /// Rounds.
    explicit GfMatrix4f(const class GfMatrix4d& m);

    using Gf_Matrix4Base::Transform;
    using Gf_Matrix4Base::TransformAffine;
    using Gf_Matrix4Base::TransformDir;
    /// \name Transforming in float; the same for GfVec3d computes in double
    /// @{
    GfVec3f Transform(const GfVec3f& vec) const
    {
        return GfProject(GfVec4f(_Column(vec, 0) + _mtx[3][0], _Column(vec, 1) + _mtx[3][1],
                                 _Column(vec, 2) + _mtx[3][2], _Column(vec, 3) + _mtx[3][3]));
    }
    GfVec3f TransformDir(const GfVec3f& vec) const
    {
        return GfVec3f(_Column(vec, 0), _Column(vec, 1), _Column(vec, 2));
    }
    GfVec3f TransformAffine(const GfVec3f& vec) const
    {
        return GfVec3f(_Column(vec, 0) + _mtx[3][0], _Column(vec, 1) + _mtx[3][1],
                       _Column(vec, 2) + _mtx[3][2]);
    }
    /// @}
};

/// Returns whether all components differ by less than tolerance.
VESK_USD_API bool GfIsClose(GfMatrix4f const& m1, GfMatrix4f const& m2, double tolerance);

/// Writes ( (row), (row), (row), (row) ).
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfMatrix4f const& m);

PXR_NAMESPACE_CLOSE_SCOPE
