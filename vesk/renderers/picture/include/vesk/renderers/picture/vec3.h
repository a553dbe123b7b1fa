#pragma once

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>

#include <algorithm>
#include <cmath>

namespace vesk::renderers::picture {

/// Three floats: the arithmetic of the inner loops.
struct Vec3
{
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;

    Vec3() = default;
    constexpr Vec3(float a, float b, float c) : x(a), y(b), z(c) {}
    explicit constexpr Vec3(float s) : x(s), y(s), z(s) {}
    explicit Vec3(const PXR_NS::GfVec3f& v) : x(v[0]), y(v[1]), z(v[2]) {}
    explicit Vec3(const PXR_NS::GfVec3d& v)
        : x(static_cast<float>(v[0])), y(static_cast<float>(v[1])), z(static_cast<float>(v[2]))
    {}

    PXR_NS::GfVec3d toGfd() const { return PXR_NS::GfVec3d(x, y, z); }
};

inline Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator-(Vec3 a) { return {-a.x, -a.y, -a.z}; }
inline Vec3 operator*(Vec3 a, Vec3 b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
inline Vec3 operator*(Vec3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
inline Vec3 operator*(float s, Vec3 a) { return a * s; }
inline Vec3& operator+=(Vec3& a, Vec3 b) { return a = a + b; }
inline bool operator==(Vec3 a, Vec3 b) { return a.x == b.x && a.y == b.y && a.z == b.z; }

inline float dot(Vec3 a, Vec3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a) { return std::sqrt(dot(a, a)); }

/// The unit vector along `a`, or `fallback` where `a` has no usable direction.
inline Vec3 normalized(Vec3 a, Vec3 fallback = Vec3(0.0f, 0.0f, 1.0f))
{
    const float l = length(a);
    return l > 0.0f && std::isfinite(l) ? a * (1.0f / l) : fallback;
}

inline Vec3 lerp(Vec3 a, Vec3 b, float t) { return a * (1.0f - t) + b * t; }
inline Vec3 max(Vec3 a, float b) { return {std::max(a.x, b), std::max(a.y, b), std::max(a.z, b)}; }
inline bool isFinite(Vec3 a) { return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z); }

/// Four floats: the value of a primvar of up to four numbers.
struct Vec4
{
    float v[4] = {0.0f, 0.0f, 0.0f, 0.0f};
};

inline Vec4 operator+(const Vec4& a, const Vec4& b)
{
    return {{a.v[0] + b.v[0], a.v[1] + b.v[1], a.v[2] + b.v[2], a.v[3] + b.v[3]}};
}
inline Vec4 operator*(const Vec4& a, float s) { return {{a.v[0] * s, a.v[1] * s, a.v[2] * s, a.v[3] * s}}; }
inline Vec4& operator+=(Vec4& a, const Vec4& b) { return a = a + b; }
inline bool operator==(const Vec4& a, const Vec4& b)
{
    return a.v[0] == b.v[0] && a.v[1] == b.v[1] && a.v[2] == b.v[2] && a.v[3] == b.v[3];
}

/// A 3x3 matrix for directions, in OpenUSD's row vectors: v * M.
struct Mat3
{
    Vec3 row0{1.0f, 0.0f, 0.0f};
    Vec3 row1{0.0f, 1.0f, 0.0f};
    Vec3 row2{0.0f, 0.0f, 1.0f};

    Vec3 apply(Vec3 v) const { return row0 * v.x + row1 * v.y + row2 * v.z; }

    /// The upper left part of a matrix.
    static Mat3 of(const PXR_NS::GfMatrix4d& m)
    {
        const auto row = [&m](int i) {
            return Vec3(static_cast<float>(m[i][0]), static_cast<float>(m[i][1]),
                        static_cast<float>(m[i][2]));
        };
        Mat3 result;
        result.row0 = row(0);
        result.row1 = row(1);
        result.row2 = row(2);
        return result;
    }

    /// What turns normals where `m` turns points: the inverse transpose, up to a positive or negative scale.
    static Mat3 forNormals(const PXR_NS::GfMatrix4d& m)
    {
        const Mat3 a = of(m);
        Mat3 cofactors;
        cofactors.row0 = cross(a.row1, a.row2);
        cofactors.row1 = cross(a.row2, a.row0);
        cofactors.row2 = cross(a.row0, a.row1);
        return cofactors;
    }
};

} // namespace vesk::renderers::picture
