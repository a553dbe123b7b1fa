#pragma once

/// GfLineSeg: a line between two points.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/line.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// The points between two ends; the parameter along it goes from 0 to 1.
class VESK_USD_API GfLineSeg
{
public:
    /// Leaves the segment undefined.
    GfLineSeg() = default;
    GfLineSeg(const GfVec3d& p0, const GfVec3d& p1) { _length = _line.Set(p0, p1 - p0); }

    GfVec3d GetPoint(double t) const { return _line.GetPoint(t * _length); }
    const GfVec3d& GetDirection() const { return _line.GetDirection(); }
    double GetLength() const { return _length; }
    /// Returns the point nearest to a given one; sets *t to its parameter unless t is null.
    GfVec3d FindClosestPoint(const GfVec3d& point, double* t = nullptr) const;

    bool operator==(const GfLineSeg& l) const { return _line == l._line && _length == l._length; }
    bool operator!=(const GfLineSeg& r) const { return !(*this == r); }

private:
    friend VESK_USD_API bool GfFindClosestPoints(const GfLine&, const GfLineSeg&, GfVec3d*, GfVec3d*, double*,
                                                 double*);
    friend VESK_USD_API bool GfFindClosestPoints(const GfLineSeg&, const GfLineSeg&, GfVec3d*, GfVec3d*,
                                                 double*, double*);

    GfLine _line;
    double _length;
};

/// Finds the points where both are nearest to each other, and their parameters; false where they are
/// parallel.
VESK_USD_API bool GfFindClosestPoints(const GfLine& line, const GfLineSeg& seg, GfVec3d* p1 = nullptr,
                                      GfVec3d* p2 = nullptr, double* t1 = nullptr, double* t2 = nullptr);
VESK_USD_API bool GfFindClosestPoints(const GfLineSeg& seg1, const GfLineSeg& seg2, GfVec3d* p1 = nullptr,
                                      GfVec3d* p2 = nullptr, double* t1 = nullptr, double* t2 = nullptr);

/// Writes (point 1:(p) point 2:(q)).
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfLineSeg& seg);

PXR_NAMESPACE_CLOSE_SCOPE
