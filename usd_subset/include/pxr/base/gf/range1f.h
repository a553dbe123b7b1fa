#pragma once

/// GfRange1f: a range of floats in one dimension.

#include <pxr/base/gf/rangeBase.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

class GfRange1f;

template <>
struct GfIsGfRange<class GfRange1f>
{
    static const bool value = true;
};

/// A range of floats in one dimension, both ends inside.
class GfRange1f : public Gf_RangeBase<GfRange1f, float, float, 1>
{
public:
    /// Makes an empty range.
    GfRange1f() = default;
    GfRange1f(float min, float max) : Gf_RangeBase(min, max) {}
    /// Rounds.
    VESK_USD_API explicit GfRange1f(class GfRange1d const& other);
};

/// Writes [min...max].
VESK_USD_API std::ostream& operator<<(std::ostream& out, GfRange1f const& r);

PXR_NAMESPACE_CLOSE_SCOPE

#include <pxr/base/gf/range1d.h>
