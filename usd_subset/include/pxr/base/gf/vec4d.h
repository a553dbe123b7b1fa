#pragma once

/// GfVec4d: four doubles.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec4d;

template <>
struct GfIsGfVec<class GfVec4d>
{
    static const bool value = true;
};

/// A vector of four doubles.
class GfVec4d : public Gf_RealVecBase<GfVec4d, double, 4>
{
public:
    /// Leaves the components undefined.
    GfVec4d() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec4d(double value) : Gf_RealVecBase(value, value, value, value) {}
    constexpr GfVec4d(double s0, double s1, double s2, double s3) : Gf_RealVecBase(s0, s1, s2, s3) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec4d(Scl const* p) : Gf_RealVecBase(p[0], p[1], p[2], p[3])
    {}
    GfVec4d(class GfVec4f const& other);
    GfVec4d(class GfVec4h const& other);
    GfVec4d(class GfVec4i const& other);
};

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>
#include <pxr/base/gf/vec4i.h>

PXR_NAMESPACE_OPEN_SCOPE

inline GfVec4d::GfVec4d(GfVec4f const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}
inline GfVec4d::GfVec4d(GfVec4h const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}
inline GfVec4d::GfVec4d(GfVec4i const& other) : Gf_RealVecBase(other[0], other[1], other[2], other[3]) {}

GF_REAL_VEC_FUNCTIONS(GfVec4d, double)

PXR_NAMESPACE_CLOSE_SCOPE
