#pragma once

/// GfVec3h: three halves.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec3h;

template <>
struct GfIsGfVec<class GfVec3h>
{
    static const bool value = true;
};

/// A vector of three halves.
class GfVec3h : public Gf_RealVec3Base<GfVec3h, GfHalf>
{
public:
    /// Leaves the components undefined.
    GfVec3h() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec3h(GfHalf value) : Gf_RealVec3Base(value, value, value) {}
    constexpr GfVec3h(GfHalf s0, GfHalf s1, GfHalf s2) : Gf_RealVec3Base(s0, s1, s2) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec3h(Scl const* p) : Gf_RealVec3Base(p[0], p[1], p[2])
    {}
    /// Rounds.
    explicit GfVec3h(class GfVec3d const& other);
    /// Rounds.
    explicit GfVec3h(class GfVec3f const& other);
    GfVec3h(class GfVec3i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec3h::GfVec3h(GfVec3d const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}
inline GfVec3h::GfVec3h(GfVec3f const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}
inline GfVec3h::GfVec3h(GfVec3i const& other) : Gf_RealVec3Base(other[0], other[1], other[2]) {}

GF_REAL_VEC3_FUNCTIONS(GfVec3h, GfHalf)

PXR_NAMESPACE_CLOSE_SCOPE
