#pragma once

/// GfRange2f: a range of floats in two dimensions.

#include <pxr/base/gf/rangeBase.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfRange2f;

template <>
struct GfIsGfRange<class GfRange2f>
{
    static const bool value = true;
};

/// A range of floats in two dimensions, both ends inside.
class GfRange2f : public Gf_RangeBase<GfRange2f, GfVec2f, float, 2>
{
public:
    /// Makes an empty range.
    GfRange2f() = default;
    GfRange2f(const GfVec2f& min, const GfVec2f& max) : Gf_RangeBase(min, max) {}
    /// Rounds.
    VESK_USD_API explicit GfRange2f(class GfRange2d const& other);

    /// Returns corner i, in the order south-west, south-east, north-west, north-east.
    VESK_USD_API GfVec2f GetCorner(size_t i) const;
    /// Returns the quarter of the range at corner i.
    VESK_USD_API GfRange2f GetQuadrant(size_t i) const;

    /// From (0, 0) to (1, 1).
    VESK_USD_API static const GfRange2f UnitSquare;
};

/// Writes [min...max].
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfRange2f const& r);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/range2d.h>
