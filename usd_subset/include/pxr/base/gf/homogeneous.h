#pragma once

/// Points in homogeneous coordinates: (x, y, z, w) stands for (x / w, y / w, z / w).

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Divides by w, which is taken for 1 where it is 0.
VESK_USD_API GfVec4f GfGetHomogenized(const GfVec4f& v);
VESK_USD_API GfVec4d GfGetHomogenized(const GfVec4d& v);

/// Returns the cross product of the two points' positions, with w 1.
VESK_USD_API GfVec4f GfHomogeneousCross(const GfVec4f& a, const GfVec4f& b);
VESK_USD_API GfVec4d GfHomogeneousCross(const GfVec4d& a, const GfVec4d& b);

/// Returns the position: (x, y, z) times 1 / w, or as it is where w is 0.
inline GfVec3f GfProject(const GfVec4f& v)
{
    const float inv = (v[3] != 0.0f) ? 1.0f / v[3] : 1.0f;
    return GfVec3f(inv * v[0], inv * v[1], inv * v[2]);
}
inline GfVec3d GfProject(const GfVec4d& v)
{
    const double inv = (v[3] != 0.0) ? 1.0 / v[3] : 1.0;
    return GfVec3d(inv * v[0], inv * v[1], inv * v[2]);
}

PXR_NAMESPACE_CLOSE_SCOPE
