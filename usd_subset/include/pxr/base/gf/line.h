#pragma once

/// GfLine: a line without ends.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <iosfwd>

PXR_NAMESPACE_OPEN_SCOPE

/// A point and a direction of unit length, so that parameters along the line are distances.
class VESK_USD_API GfLine
{
public:
    /// Leaves the line undefined.
    GfLine() = default;
    GfLine(const GfVec3d& p0, const GfVec3d& dir) { Set(p0, dir); }

    /// Sets point and direction (normalized); returns the direction's length before.
    double Set(const GfVec3d& p0, const GfVec3d& dir)
    {
        _p0 = p0;
        _dir = dir;
        return _dir.Normalize();
    }

    GfVec3d GetPoint(double t) const { return _p0 + _dir * t; }
    const GfVec3d& GetDirection() const { return _dir; }
    /// Returns the point nearest to a given one; sets *t to its parameter unless t is null.
    GfVec3d FindClosestPoint(const GfVec3d& point, double* t = nullptr) const;

    bool operator==(const GfLine& l) const { return _p0 == l._p0 && _dir == l._dir; }
    bool operator!=(const GfLine& r) const { return !(*this == r); }

private:
    GfVec3d _p0;
    GfVec3d _dir;
};

/// Finds the points where two lines are nearest to each other, and their parameters; false for parallel
/// lines.
VESK_USD_API bool GfFindClosestPoints(const GfLine& l1, const GfLine& l2, GfVec3d* p1 = nullptr,
                                      GfVec3d* p2 = nullptr, double* t1 = nullptr, double* t2 = nullptr);

/// Writes (point:(p) direction:(d)).
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfLine& line);

PXR_NAMESPACE_CLOSE_SCOPE
