#pragma once

/// GfVec2f: two floats.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec2f;

template <>
struct GfIsGfVec<class GfVec2f>
{
    static const bool value = true;
};

/// A vector of two floats.
class GfVec2f : public Gf_RealVecBase<GfVec2f, float, 2>
{
public:
    /// Leaves the components undefined.
    GfVec2f() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec2f(float value) : Gf_RealVecBase(value, value) {}
    constexpr GfVec2f(float s0, float s1) : Gf_RealVecBase(s0, s1) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec2f(Scl const* p) : Gf_RealVecBase(p[0], p[1])
    {}
    /// Rounds.
    explicit GfVec2f(class GfVec2d const& other);
    GfVec2f(class GfVec2h const& other);
    GfVec2f(class GfVec2i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec2i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec2f::GfVec2f(GfVec2d const& other) : Gf_RealVecBase(other[0], other[1]) {}
inline GfVec2f::GfVec2f(GfVec2h const& other) : Gf_RealVecBase(other[0], other[1]) {}
inline GfVec2f::GfVec2f(GfVec2i const& other) : Gf_RealVecBase(other[0], other[1]) {}

GF_REAL_VEC_FUNCTIONS(GfVec2f, float)

PXR_NAMESPACE_CLOSE_SCOPE
