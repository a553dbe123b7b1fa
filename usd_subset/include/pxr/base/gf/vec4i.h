#pragma once

/// GfVec4i: four ints.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec4i;

template <>
struct GfIsGfVec<class GfVec4i>
{
    static const bool value = true;
};

/// A vector of four ints.
class GfVec4i : public Gf_IntVecBase<GfVec4i, int, 4>
{
public:
    /// Leaves the components undefined.
    GfVec4i() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec4i(int value) : Gf_IntVecBase(value, value, value, value) {}
    constexpr GfVec4i(int s0, int s1, int s2, int s3) : Gf_IntVecBase(s0, s1, s2, s3) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec4i(Scl const* p) : Gf_IntVecBase(p[0], p[1], p[2], p[3])
    {}
};

GF_VEC_FUNCTIONS(GfVec4i, int)

PXR_NAMESPACE_CLOSE_SCOPE
