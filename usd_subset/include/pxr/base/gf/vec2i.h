#pragma once

/// GfVec2i: two ints.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec2i;

template <>
struct GfIsGfVec<class GfVec2i>
{
    static const bool value = true;
};

/// A vector of two ints.
class GfVec2i : public Gf_IntVecBase<GfVec2i, int, 2>
{
public:
    /// Leaves the components undefined.
    GfVec2i() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec2i(int value) : Gf_IntVecBase(value, value) {}
    constexpr GfVec2i(int s0, int s1) : Gf_IntVecBase(s0, s1) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec2i(Scl const* p) : Gf_IntVecBase(p[0], p[1])
    {}
};

GF_VEC_FUNCTIONS(GfVec2i, int)

PXR_NAMESPACE_CLOSE_SCOPE
