#pragma once

/// GfVec2h: two halves.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec2h;

template <>
struct GfIsGfVec<class GfVec2h>
{
    static const bool value = true;
};

/// A vector of two halves.
class GfVec2h : public Gf_RealVecBase<GfVec2h, GfHalf, 2>
{
public:
    /// Leaves the components undefined.
    GfVec2h() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec2h(GfHalf value) : Gf_RealVecBase(value, value) {}
    constexpr GfVec2h(GfHalf s0, GfHalf s1) : Gf_RealVecBase(s0, s1) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec2h(Scl const* p) : Gf_RealVecBase(p[0], p[1])
    {}
    /// Rounds.
    explicit GfVec2h(class GfVec2d const& other);
    /// Rounds.
    explicit GfVec2h(class GfVec2f const& other);
    GfVec2h(class GfVec2i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec2h::GfVec2h(GfVec2d const& other) : Gf_RealVecBase(other[0], other[1]) {}
inline GfVec2h::GfVec2h(GfVec2f const& other) : Gf_RealVecBase(other[0], other[1]) {}
inline GfVec2h::GfVec2h(GfVec2i const& other) : Gf_RealVecBase(other[0], other[1]) {}

GF_REAL_VEC_FUNCTIONS(GfVec2h, GfHalf)

PXR_NAMESPACE_CLOSE_SCOPE
