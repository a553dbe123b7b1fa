#pragma once

/// GfVec4f: four floats.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec4f;

template <>
struct GfIsGfVec<class GfVec4f>
{
    static const bool value = true;
};

/// A vector of four floats.
class GfVec4f : public Gf_RealVecBase<GfVec4f, float, 4>
{
public:
    /// Leaves the components undefined.
    GfVec4f() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec4f(float value) : Gf_RealVecBase(value, value, value, value) {}
    constexpr GfVec4f(float s0, float s1, float s2, float s3) : Gf_RealVecBase(s0, s1, s2, s3) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec4f(Scl const* p) : Gf_RealVecBase(p[0], p[1], p[2], p[3])
    {}
    /// Rounds.
    explicit GfVec4f(class GfVec4d const& other);
    GfVec4f(class GfVec4h const& other);
    GfVec4f(class GfVec4i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/base/gf/vec4i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec4f::GfVec4f(GfVec4d const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}
inline GfVec4f::GfVec4f(GfVec4h const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}
inline GfVec4f::GfVec4f(GfVec4i const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}

GF_REAL_VEC_FUNCTIONS(GfVec4f, float)

PXR_NAMESPACE_CLOSE_SCOPE
