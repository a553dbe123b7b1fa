#pragma once

/// GfVec3f: three floats.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec3f;

template <>
struct GfIsGfVec<class GfVec3f>
{
    static const bool value = true;
};

/// A vector of three floats.
class GfVec3f : public Gf_RealVec3Base<GfVec3f, float>
{
public:
    /// Leaves the components undefined.
    GfVec3f() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec3f(float value) : Gf_RealVec3Base(value, value, value) {}
    constexpr GfVec3f(float s0, float s1, float s2) : Gf_RealVec3Base(s0, s1, s2) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec3f(Scl const* p) : Gf_RealVec3Base(p[0], p[1], p[2])
    {}
    /// Rounds.
    explicit GfVec3f(class GfVec3d const& other);
    GfVec3f(class GfVec3h const& other);
    GfVec3f(class GfVec3i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec3i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec3f::GfVec3f(GfVec3d const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}
inline GfVec3f::GfVec3f(GfVec3h const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}
inline GfVec3f::GfVec3f(GfVec3i const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}

GF_REAL_VEC3_FUNCTIONS(GfVec3f, float)

PXR_NAMESPACE_CLOSE_SCOPE
