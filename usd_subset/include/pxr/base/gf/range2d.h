#pragma once

/// GfRange2d: a range of doubles in two dimensions.

#include <pxr/base/gf/rangeBase.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfRange2d;

template <>
struct GfIsGfRange<class GfRange2d>
{
    static const bool value = true;
};

/// A range of doubles in two dimensions, both ends inside.
class GfRange2d : public Gf_RangeBase<GfRange2d, GfVec2d, double, 2>
{
public:
    /// Makes an empty range.
    GfRange2d() = default;
    GfRange2d(const GfVec2d& min, const GfVec2d& max) : Gf_RangeBase(min, max) {}
    VESK_USD_API GfRange2d(class GfRange2f const& other);

    /// Returns corner i, in the order south-west, south-east, north-west, north-east.
    VESK_USD_API GfVec2d GetCorner(size_t i) const;
    /// Returns the quarter of the range at corner i.
    VESK_USD_API GfRange2d GetQuadrant(size_t i) const;

    /// From (0, 0) to (1, 1).
    VESK_USD_API static const GfRange2d UnitSquare;
};

/// Writes [min...max].
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfRange2d const& r);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/range2f.h>
