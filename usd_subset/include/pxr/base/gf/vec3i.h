#pragma once

/// GfVec3i: three ints.

#include <pxr/base/gf/vecBase.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfVec3i;

template <>
struct GfIsGfVec<class GfVec3i>
{
    static const bool value = true;
};

/// A vector of three ints.
class GfVec3i : public Gf_IntVecBase<GfVec3i, int, 3>
{
public:
    /// Leaves the components undefined.
    GfVec3i() = default;
    /// Sets all components to one value.
    constexpr explicit GfVec3i(int value) : Gf_IntVecBase(value, value, value) {}
    constexpr GfVec3i(int s0, int s1, int s2) : Gf_IntVecBase(s0, s1, s2) {}
    /// Reads the components from an array.
    template <class Scl>
    constexpr explicit GfVec3i(Scl const* p) : Gf_IntVecBase(p[0], p[1], p[2])
    {}
};

GF_VEC_FUNCTIONS(GfVec3i, int)

PXR_NAMESPACE_CLOSE_SCOPE
