#pragma once

/// GfRange1d: a range of doubles in one dimension.

#include <pxr/base/gf/rangeBase.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfRange1d;

template <>
struct GfIsGfRange<class GfRange1d>
{
    static const bool value = true;
};

/// A range of doubles in one dimension, both ends inside.
class GfRange1d : public Gf_RangeBase<GfRange1d, double, double, 1>
{
public:
    /// Makes an empty range.
    GfRange1d() = default;
    GfRange1d(double min, double max) : Gf_RangeBase(min, max) {}
    VESK_USD_API GfRange1d(class GfRange1f const& other);
};

/// Writes [min...max].
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfRange1d const& r);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/range1f.h>
