#pragma once

/// GfRange3d: a range of doubles in three dimensions.

#include <pxr/base/gf/rangeBase.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfRange3d;

template <>
struct GfIsGfRange<class GfRange3d>
{
    static const bool value = true;
};

/// A range of doubles in three dimensions, both ends inside.
class GfRange3d : public Gf_RangeBase<GfRange3d, GfVec3d, double, 3>
{
public:
    /// Makes an empty range.
    GfRange3d() = default;
    GfRange3d(const GfVec3d& min, const GfVec3d& max) : Gf_RangeBase(min, max) {}
    VESK_USD_API GfRange3d(class GfRange3f const& other);

    /// Returns corner i: bit 0 takes the right, bit 1 the upper, bit 2 the front side.
    VESK_USD_API GfVec3d GetCorner(size_t i) const;
    /// Returns the eighth of the range at corner i.
    VESK_USD_API GfRange3d GetOctant(size_t i) const;

    /// From (0, 0, 0) to (1, 1, 1).
    VESK_USD_API static const GfRange3d UnitCube;
};

/// Writes [min...max].
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfRange3d const& r);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/range3f.h>
