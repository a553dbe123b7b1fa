#pragma once

/// GfVec2d: two doubles.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec2d;

template <>
struct GfIsGfVec<class GfVec2d>
{
    static const bool value = true;
};

/// A vector of two doubles.
class GfVec2d : public Gf_RealVecBase<GfVec2d, double, 2>
{
public:
    /// Leaves the components undefined.
    GfVec2d() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec2d(double value) : Gf_RealVecBase(value, value) {}
    constexpr GfVec2d(double s0, double s1) : Gf_RealVecBase(s0, s1) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec2d(Scl const* p) : Gf_RealVecBase(p[0], p[1])
    {}
    GfVec2d(class GfVec2f const& other);
    GfVec2d(class GfVec2h const& other);
    GfVec2d(class GfVec2i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec2h.h>
#include <pxr/base/gf/vec2i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec2d::GfVec2d(GfVec2f const& other) : Gf_RealVecBase(other[0], other[1]) {}
inline GfVec2d::GfVec2d(GfVec2h const& other) : Gf_RealVecBase(other[0], other[1]) {}
inline GfVec2d::GfVec2d(GfVec2i const& other) : Gf_RealVecBase(other[0], other[1]) {}

GF_REAL_VEC_FUNCTIONS(GfVec2d, double)

PXR_NAMESPACE_CLOSE_SCOPE
