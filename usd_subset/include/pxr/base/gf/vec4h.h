#pragma once

/// GfVec4h: four halves.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec4h;

template <>
struct GfIsGfVec<class GfVec4h>
{
    static const bool value = true;
};

/// A vector of four halves.
class GfVec4h : public Gf_RealVecBase<GfVec4h, GfHalf, 4>
{
public:
    /// Leaves the components undefined.
    GfVec4h() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec4h(GfHalf value) : Gf_RealVecBase(value, value, value, value) {}
    constexpr GfVec4h(GfHalf s0, GfHalf s1, GfHalf s2, GfHalf s3) : Gf_RealVecBase(s0, s1, s2, s3) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec4h(Scl const* p) : Gf_RealVecBase(p[0], p[1], p[2], p[3])
    {}
    /// Rounds.
    explicit GfVec4h(class GfVec4d const& other);
    /// Rounds.
    explicit GfVec4h(class GfVec4f const& other);
    GfVec4h(class GfVec4i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec4h::GfVec4h(GfVec4d const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}
inline GfVec4h::GfVec4h(GfVec4f const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}
inline GfVec4h::GfVec4h(GfVec4i const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}

GF_REAL_VEC_FUNCTIONS(GfVec4h, GfHalf)

PXR_NAMESPACE_CLOSE_SCOPE
