#pragma once

/// GfVec3d: three doubles.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec3d;

template <>
struct GfIsGfVec<class GfVec3d>
{
    static const bool value = true;
};

/// A vector of three doubles.
class GfVec3d : public Gf_RealVec3Base<GfVec3d, double>
{
public:
    /// Leaves the components undefined.
    GfVec3d() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec3d(double value) : Gf_RealVec3Base(value, value, value) {}
    constexpr GfVec3d(double s0, double s1, double s2) : Gf_RealVec3Base(s0, s1, s2) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec3d(Scl const* p) : Gf_RealVec3Base(p[0], p[1], p[2])
    {}
    GfVec3d(class GfVec3f const& other);
    GfVec3d(class GfVec3h const& other);
    GfVec3d(class GfVec3i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec3d::GfVec3d(GfVec3f const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}
inline GfVec3d::GfVec3d(GfVec3h const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}
inline GfVec3d::GfVec3d(GfVec3i const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}

GF_REAL_VEC3_FUNCTIONS(GfVec3d, double)

PXR_NAMESPACE_CLOSE_SCOPE
