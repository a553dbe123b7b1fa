#pragma once

/// GfRay: a line with a start, for intersections.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

class GfBBox3d;
class GfLine;
class GfLineSeg;
class GfPlane;
class GfRange3d;

/// A start and a direction of any length. Distances along the ray are multiples of the direction; 0 counts as
/// hit. Results that are not wanted may be null.
class VESK_USD_API GfRay
{
public:
    /// Leaves the ray undefined.
    GfRay() = default;
    GfRay(const GfVec3d& startPoint, const GfVec3d& direction)
    {
        SetPointAndDirection(startPoint, direction);
    }

    void SetPointAndDirection(const GfVec3d& startPoint, const GfVec3d& direction)
    {
        _startPoint = startPoint;
        _direction = direction;
    }
    void SetEnds(const GfVec3d& startPoint, const GfVec3d& endPoint)
    {
        SetPointAndDirection(startPoint, endPoint - startPoint);
    }

    const GfVec3d& GetStartPoint() const { return _startPoint; }
    const GfVec3d& GetDirection() const { return _direction; }
    GfVec3d GetPoint(double distance) const { return _startPoint + distance * _direction; }
    GfRay& Transform(const GfMatrix4d& matrix);
    /// Returns the point of the ray nearest to a given one.
    GfVec3d FindClosestPoint(const GfVec3d& point, double* rayDistance = nullptr) const;

    bool operator==(const GfRay& r) const
    {
        return _startPoint == r._startPoint && _direction == r._direction;
    }
    bool operator!=(const GfRay& r) const { return !(*this == r); }

    /// Hits a triangle no further away than maxDist. barycentricCoords weigh p0, p1 and p2; the front is the
    /// side from which the points go round counter-clockwise.
    bool Intersect(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2, double* distance = nullptr,
                   GfVec3d* barycentricCoords = nullptr, bool* frontFacing = nullptr,
                   double maxDist = std::numeric_limits<double>::infinity()) const;
    /// Hits a plane that is not parallel to the ray.
    bool Intersect(const GfPlane& plane, double* distance = nullptr, bool* frontFacing = nullptr) const;
    /// \name Solids: where the ray's line enters (negative where it starts inside) and leaves
    /// @{
    bool Intersect(const GfRange3d& box, double* enterDistance = nullptr,
                   double* exitDistance = nullptr) const;
    bool Intersect(const GfBBox3d& box, double* enterDistance = nullptr,
                   double* exitDistance = nullptr) const;
    /// Hits a sphere.
    bool Intersect(const GfVec3d& center, double radius, double* enterDistance = nullptr,
                   double* exitDistance = nullptr) const;
    /// Hits a cylinder without ends.
    bool Intersect(const GfVec3d& origin, const GfVec3d& axis, const double radius,
                   double* enterDistance = nullptr, double* exitDistance = nullptr) const;
    /// Hits a cone without end whose radius at the origin is given and whose apex is height up the axis.
    bool Intersect(const GfVec3d& origin, const GfVec3d& axis, const double radius, const double height,
                   double* enterDistance = nullptr, double* exitDistance = nullptr) const;
    /// @}

private:
    GfVec3d _startPoint;
    GfVec3d _direction;
};

/// Finds the points where both are nearest to each other, and their parameters; false where they are
/// parallel.
VESK_USD_API bool GfFindClosestPoints(const GfRay& ray, const GfLine& line, GfVec3d* rayPoint = nullptr,
                                      GfVec3d* linePoint = nullptr, double* rayDistance = nullptr,
                                      double* lineDistance = nullptr);
VESK_USD_API bool GfFindClosestPoints(const GfRay& ray, const GfLineSeg& seg, GfVec3d* rayPoint = nullptr,
                                      GfVec3d* segPoint = nullptr, double* rayDistance = nullptr,
                                      double* segDistance = nullptr);

/// Writes [(start) >> (direction)].
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfRay& r);

PXR_NAMESPACE_CLOSE_SCOPE
