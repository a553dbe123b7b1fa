#pragma once

/// GfPlane: a plane, or the half-space in front of it.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <iosfwd>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class GfMatrix4d;
class GfRange3d;
class GfVec4d;

/// A normal of unit length and the distance from the origin along it. The half-space is the side of the
/// normal, plane included.
class VESK_USD_API GfPlane
{
public:
    /// Leaves the plane undefined.
    GfPlane() = default;
    GfPlane(const GfVec3d& normal, double distanceToOrigin) { Set(normal, distanceToOrigin); }
    GfPlane(const GfVec3d& normal, const GfVec3d& point) { Set(normal, point); }
    GfPlane(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2) { Set(p0, p1, p2); }
    GfPlane(const GfVec4d& eqn) { Set(eqn); }

    /// Sets the normal (normalized) and the distance (as it is).
    void Set(const GfVec3d& normal, double distanceToOrigin)
    {
        _normal = normal.GetNormalized();
        _distance = distanceToOrigin;
    }
    /// Sets the plane through a point.
    void Set(const GfVec3d& normal, const GfVec3d& point);
    /// Sets the plane through three points, counter-clockwise for who looks against the normal.
    void Set(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2);
    /// Sets the plane where eqn[0] x + eqn[1] y + eqn[2] z + eqn[3] = 0.
    void Set(const GfVec4d& eqn);

    const GfVec3d& GetNormal() const { return _normal; }
    double GetDistanceFromOrigin() const { return _distance; }
    /// Returns (normal, -distance), the coefficients of Set().
    GfVec4d GetEquation() const;

    bool operator==(const GfPlane& p) const { return _normal == p._normal && _distance == p._distance; }
    bool operator!=(const GfPlane& p) const { return !(*this == p); }

    /// Returns the distance of a point, negative behind the plane.
    double GetDistance(const GfVec3d& p) const { return p * _normal - _distance; }
    /// Returns the nearest point of the plane.
    GfVec3d Project(const GfVec3d& p) const { return p - GetDistance(p) * _normal; }
    GfPlane& Transform(const GfMatrix4d& matrix);
    /// Turns the plane round where p is behind it.
    void Reorient(const GfVec3d& p)
    {
        if (GetDistance(p) < 0) {
            _normal = -_normal;
            _distance = -_distance;
        }
    }

    /// Returns whether any part of a box is in the half-space; an empty box is not.
    bool IntersectsPositiveHalfSpace(const GfRange3d& box) const;
    bool IntersectsPositiveHalfSpace(const GfVec3d& pt) const { return GetDistance(pt) >= 0.0; }

private:
    GfVec3d _normal;
    double _distance;
};

/// Sets fitPlane to the plane nearest to the points, by least squares; false where they lie on a line. Fewer
/// than three points are a coding error.
VESK_USD_API bool GfFitPlaneToPoints(const std::vector<GfVec3d>& points, GfPlane* fitPlane);

/// Writes [(normal) distance].
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfPlane& p);

PXR_NAMESPACE_CLOSE_SCOPE
