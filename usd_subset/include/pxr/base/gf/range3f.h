#pragma once

/// GfRange3f: a range of floats in three dimensions.

#include <pxr/base/gf/rangeBase.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfRange3f;

template <>
struct GfIsGfRange<class GfRange3f>
{
    static const bool value = true;
};

/// A range of floats in three dimensions, both ends inside.
class GfRange3f : public Gf_RangeBase<GfRange3f, GfVec3f, float, 3>
{
public:
    /// Makes an empty range.
    GfRange3f() = default;
    GfRange3f(const GfVec3f& min, const GfVec3f& max) : Gf_RangeBase(min, max) {}
    /// Rounds.
    VESK_USD_API explicit GfRange3f(class GfRange3d const& other);

    /// Returns corner i: bit 0 takes the right, bit 1 the upper, bit 2 the front side.
    VESK_USD_API GfVec3f GetCorner(size_t i) const;
    /// Returns the eighth of the range at corner i.
    VESK_USD_API GfRange3f GetOctant(size_t i) const;

    /// From (0, 0, 0) to (1, 1, 1).
    VESK_USD_API static const GfRange3f UnitCube;
};

/// Writes [min...max].
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfRange3f const& r);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/range3d.h>
