#pragma once

/// GfRect2i: a rectangle of pixels.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// The pixels from a minimum to a maximum corner, both inside: the width is max x - min x + 1.
class GfRect2i
{
public:
    /// Makes an empty rectangle at (0, 0).
    GfRect2i() : _min(0, 0), _max(-1, -1) {}
    GfRect2i(const GfVec2i& min, const GfVec2i& max) : _min(min), _max(max) {}
    GfRect2i(const GfVec2i& min, int width, int height)
        : _min(min), _max(min + GfVec2i(width - 1, height - 1))
    {}

    /// Returns whether width and height are 0.
    bool IsNull() const { return GetWidth() == 0 && GetHeight() == 0; }
    /// Returns whether width or height is 0 or less.
    bool IsEmpty() const { return GetWidth() <= 0 || GetHeight() <= 0; }
    bool IsValid() const { return !IsEmpty(); }
    /// Returns the rectangle with the corners swapped where the maximum is below the minimum.
    VESK_USD_API GfRect2i GetNormalized() const;

    /// \name Corners
    /// @{
    const GfVec2i& GetMin() const { return _min; }
    const GfVec2i& GetMax() const { return _max; }
    int GetMinX() const { return _min[0]; }
    void SetMinX(int x) { _min[0] = x; }
    int GetMaxX() const { return _max[0]; }
    void SetMaxX(int x) { _max[0] = x; }
    int GetMinY() const { return _min[1]; }
    void SetMinY(int y) { _min[1] = y; }
    int GetMaxY() const { return _max[1]; }
    void SetMaxY(int y) { _max[1] = y; }
    void SetMin(const GfVec2i& min) { _min = min; }
    void SetMax(const GfVec2i& max) { _max = max; }
    /// @}

    GfVec2i GetCenter() const { return (_min + _max) / 2; }
    void Translate(const GfVec2i& displacement)
    {
        _min += displacement;
        _max += displacement;
    }
    unsigned long GetArea() const
    {
        return static_cast<unsigned long>(GetWidth()) * static_cast<unsigned long>(GetHeight());
    }
    GfVec2i GetSize() const { return GfVec2i(GetWidth(), GetHeight()); }
    int GetWidth() const { return (_max[0] - _min[0]) + 1; }
    int GetHeight() const { return (_max[1] - _min[1]) + 1; }

    /// Returns what both have in common; an empty rectangle stays as it is.
    GfRect2i GetIntersection(const GfRect2i& that) const
    {
        if (IsEmpty()) {
            return *this;
        }
        if (that.IsEmpty()) {
            return that;
        }
        return GfRect2i(GfVec2i(GfMax(_min[0], that._min[0]), GfMax(_min[1], that._min[1])),
                        GfVec2i(GfMin(_max[0], that._max[0]), GfMin(_max[1], that._max[1])));
    }
    GfRect2i Intersect(const GfRect2i& that) const { return GetIntersection(that); }
    /// Returns the smallest rectangle around both.
    GfRect2i GetUnion(const GfRect2i& that) const
    {
        if (IsEmpty()) {
            return that;
        }
        if (that.IsEmpty()) {
            return *this;
        }
        return GfRect2i(GfVec2i(GfMin(_min[0], that._min[0]), GfMin(_min[1], that._min[1])),
                        GfVec2i(GfMax(_max[0], that._max[0]), GfMax(_max[1], that._max[1])));
    }
    GfRect2i Union(const GfRect2i& that) const { return GetUnion(that); }
    bool Contains(const GfVec2i& p) const
    {
        return p[0] >= _min[0] && p[0] <= _max[0] && p[1] >= _min[1] && p[1] <= _max[1];
    }

    friend inline size_t hash_value(const GfRect2i& r) { return Gf_HashCombine(r._min, r._max); }
    friend bool operator==(const GfRect2i& r1, const GfRect2i& r2)
    {
        return r1._min == r2._min && r1._max == r2._max;
    }
    friend bool operator!=(const GfRect2i& r1, const GfRect2i& r2) { return !(r1 == r2); }

    /// Unites.
    GfRect2i operator+=(const GfRect2i& that)
    {
        *this = GetUnion(that);
        return *this;
    }
    friend GfRect2i operator+(const GfRect2i r1, const GfRect2i& r2) { return r1.GetUnion(r2); }

private:
    GfVec2i _min;
    GfVec2i _max;
};

/// Writes [(min):(max)].
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfRect2i& r);

PXR_NAMESPACE_CLOSE_SCOPE
