#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/limits.h>
#include <pxr/base/gf/line.h>
#include <pxr/base/gf/lineSeg.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/plane.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/ray.h>
#include <pxr/base/gf/vec2d.h>

#include <cfloat>
#include <cmath>
#include <ostream>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr double kTolerance = 1e-6;

template <class T>
void SetUnlessNull(T* result, const T& value)
{
    if (result) {
        *result = value;
    }
}

// Distances along a ray to where it enters and leaves a solid.
struct Crossing
{
    double enter = 0.0;
    double exit = 0.0;

    void Report(double* enterDistance, double* exitDistance) const
    {
        SetUnlessNull(enterDistance, enter);
        SetUnlessNull(exitDistance, exit);
    }
};

// Solves a t^2 + b t + c = 0; false unless a solution is at 0 or above.
bool SolveQuadratic(double a, double b, double c, Crossing* crossing)
{
    const double discriminant = GfSqr(b) - 4.0 * a * c;
    const bool isLinear = GfIsClose(a, 0.0, kTolerance);
    if (isLinear || GfIsClose(discriminant, 0.0, kTolerance)) {
        if (isLinear && GfIsClose(b, 0.0, kTolerance)) {
            return false;
        }
        const double t = isLinear ? -c / b : -b / (2.0 * a);
        crossing->enter = crossing->exit = t;
        return !(t < 0.0);
    }
    if (discriminant < 0.0) {
        return false;
    }
    // Adding numbers of one sign loses no digits; the other solution follows from the product of both.
    const double q = -0.5 * (b + std::copysign(1.0, b) * GfSqrt(discriminant));
    crossing->enter = q / a;
    crossing->exit = c / q;
    if (crossing->enter > crossing->exit) {
        std::swap(crossing->enter, crossing->exit);
    }
    return crossing->exit >= 0;
}

// Numbers that rounding has made slightly negative count as 0.
double WithoutNoise(double value) { return value < 0 && value > -GF_MIN_VECTOR_LENGTH ? 0 : value; }

// The two coordinates in which a triangle with this normal appears largest.
std::pair<int, int> ProjectionAxes(const GfVec3d& normal)
{
    const double x = GfAbs(normal[0]);
    const double y = GfAbs(normal[1]);
    const double z = GfAbs(normal[2]);
    if (x > y && x > z) {
        return {1, 2};
    }
    return y > z ? std::make_pair(2, 0) : std::make_pair(0, 1);
}

} // namespace

GfRay& GfRay::Transform(const GfMatrix4d& matrix)
{
    _startPoint = matrix.Transform(_startPoint);
    _direction = matrix.TransformDir(_direction);
    return *this;
}

GfVec3d GfRay::FindClosestPoint(const GfVec3d& point, double* rayDistance) const
{
    GfLine line;
    const double length = line.Set(_startPoint, _direction);
    double distance;
    line.FindClosestPoint(point, &distance);
    distance = distance < 0.0 ? 0.0 : distance;
    SetUnlessNull(rayDistance, distance / length);
    return line.GetPoint(distance);
}

namespace {

template <class Other>
bool FindClosestPointsOfRay(const GfRay& ray, const Other& other, GfVec3d* rayPoint, GfVec3d* otherPoint,
                            double* rayDistance, double* otherDistance)
{
    GfLine line;
    const double length = line.Set(ray.GetStartPoint(), ray.GetDirection());
    GfVec3d onOther;
    double distance, parameter;
    if (!GfFindClosestPoints(line, other, nullptr, &onOther, &distance, &parameter)) {
        return false;
    }
    distance = distance < 0.0 ? 0.0 : distance;
    SetUnlessNull(rayPoint, line.GetPoint(distance));
    SetUnlessNull(otherPoint, onOther);
    SetUnlessNull(rayDistance, distance / length);
    SetUnlessNull(otherDistance, parameter);
    return true;
}

} // namespace

bool GfFindClosestPoints(const GfRay& ray, const GfLine& line, GfVec3d* rayPoint, GfVec3d* linePoint,
                         double* rayDistance, double* lineDistance)
{
    return FindClosestPointsOfRay(ray, line, rayPoint, linePoint, rayDistance, lineDistance);
}

bool GfFindClosestPoints(const GfRay& ray, const GfLineSeg& seg, GfVec3d* rayPoint, GfVec3d* segPoint,
                         double* rayDistance, double* segDistance)
{
    return FindClosestPointsOfRay(ray, seg, rayPoint, segPoint, rayDistance, segDistance);
}

bool GfRay::Intersect(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2, double* distance,
                      GfVec3d* barycentricCoords, bool* frontFacing, double maxDist) const
{
    const GfPlane plane(p0, p1, p2);
    double t;
    if (!Intersect(plane, &t, frontFacing) || t > maxDist) {
        return false;
    }
    const auto [u, v] = ProjectionAxes(plane.GetNormal());
    const GfVec2d hit(_startPoint[u] + t * _direction[u] - p0[u], _startPoint[v] + t * _direction[v] - p0[v]);
    const GfVec2d d1(p1[u] - p0[u], p1[v] - p0[v]);
    const GfVec2d d2(p2[u] - p0[u], p2[v] - p0[v]);

    const double beta = WithoutNoise((hit[1] * d1[0] - hit[0] * d1[1]) / (d2[1] * d1[0] - d2[0] * d1[1]));
    if (beta < 0.0 || beta > 1.0) {
        return false;
    }
    const int divisor = d1[1] < -GF_MIN_VECTOR_LENGTH || d1[1] > GF_MIN_VECTOR_LENGTH ? 1 : 0;
    const double alpha = WithoutNoise((hit[divisor] - beta * d2[divisor]) / d1[divisor]);
    // In float, so that a point on the edge opposite p0 counts as inside.
    const float gamma = static_cast<float>(WithoutNoise(static_cast<float>(1.0 - (alpha + beta))));
    if (alpha < 0.0 || gamma < 0.0) {
        return false;
    }
    SetUnlessNull(distance, t);
    SetUnlessNull(barycentricCoords, GfVec3d(gamma, alpha, beta));
    return true;
}

bool GfRay::Intersect(const GfPlane& plane, double* distance, bool* frontFacing) const
{
    const double d = GfDot(_direction, plane.GetNormal());
    if (d < GF_MIN_VECTOR_LENGTH && d > -GF_MIN_VECTOR_LENGTH) {
        return false;
    }
    const GfVec3d planePoint = plane.GetDistanceFromOrigin() * plane.GetNormal();
    const double t = GfDot(planePoint - _startPoint, plane.GetNormal()) / d;
    if (t < 0.0) {
        return false;
    }
    SetUnlessNull(distance, t);
    SetUnlessNull(frontFacing, d < 0.0);
    return true;
}

bool GfRay::Intersect(const GfRange3d& box, double* enterDistance, double* exitDistance) const
{
    if (box.IsEmpty()) {
        return false;
    }
    // The ray is in the box where it is in all three slabs.
    Crossing inside{-DBL_MAX, DBL_MAX};
    for (int i = 0; i != 3; ++i) {
        if (GfAbs(_direction[i]) < GF_MIN_VECTOR_LENGTH) {
            if (_startPoint[i] < box.GetMin()[i] || _startPoint[i] > box.GetMax()[i]) {
                return false;
            }
            continue;
        }
        const double inverse = 1.0 / _direction[i];
        double t1 = inverse * (box.GetMin()[i] - _startPoint[i]);
        double t2 = inverse * (box.GetMax()[i] - _startPoint[i]);
        if (t1 > t2) {
            std::swap(t1, t2);
        }
        inside.enter = t1 > inside.enter ? t1 : inside.enter;
        inside.exit = t2 < inside.exit ? t2 : inside.exit;
    }
    if (inside.enter > inside.exit || inside.exit < 0.0) {
        return false;
    }
    inside.Report(enterDistance, exitDistance);
    return true;
}

bool GfRay::Intersect(const GfBBox3d& box, double* enterDistance, double* exitDistance) const
{
    // Distances are multiples of the direction, hence the same in the space of the box.
    return GfRay(*this)
        .Transform(box.GetInverseMatrix())
        .Intersect(box.GetRange(), enterDistance, exitDistance);
}

bool GfRay::Intersect(const GfVec3d& center, double radius, double* enterDistance, double* exitDistance) const
{
    // By the difference of two points of the ray, so that results round as OpenUSD's do.
    const GfVec3d p1 = _startPoint;
    const GfVec3d d = p1 + _direction - p1;
    const double a = GfDot(d, d);
    const double b = 2 * GfDot(d, p1 - center);
    const double c = center[0] * center[0] + center[1] * center[1] + center[2] * center[2] + p1[0] * p1[0] +
                     p1[1] * p1[1] + p1[2] * p1[2] -
                     2 * (center[0] * p1[0] + center[1] * p1[1] + center[2] * p1[2]) - radius * radius;
    Crossing crossing;
    if (!SolveQuadratic(a, b, c, &crossing)) {
        return false;
    }
    crossing.Report(enterDistance, exitDistance);
    return true;
}

bool GfRay::Intersect(const GfVec3d& origin, const GfVec3d& axis, const double radius, double* enterDistance,
                      double* exitDistance) const
{
    const GfVec3d unitAxis = axis.GetNormalized();
    const GfVec3d delta = _startPoint - origin;
    // Seen along the axis, the cylinder is a circle.
    const GfVec3d u = _direction - GfDot(_direction, unitAxis) * unitAxis;
    const GfVec3d v = delta - GfDot(delta, unitAxis) * unitAxis;
    Crossing crossing;
    if (!SolveQuadratic(GfDot(u, u), 2.0 * GfDot(u, v), GfDot(v, v) - GfSqr(radius), &crossing)) {
        return false;
    }
    crossing.Report(enterDistance, exitDistance);
    return true;
}

bool GfRay::Intersect(const GfVec3d& origin, const GfVec3d& axis, const double radius, const double height,
                      double* enterDistance, double* exitDistance) const
{
    const GfVec3d unitAxis = axis.GetNormalized();
    const GfVec3d apex = origin + height * unitAxis;
    const GfVec3d delta = _startPoint - apex;
    const double p = GfDot(_direction, unitAxis);
    const double q = GfDot(delta, unitAxis);
    const GfVec3d u = _direction - p * unitAxis;
    const GfVec3d v = delta - q * unitAxis;
    // Along the surface, the distance from the axis and that from the apex keep one ratio.
    const double cos2 = GfSqr(height) / (GfSqr(height) + GfSqr(radius));
    const double sin2 = 1 - cos2;
    Crossing crossing;
    if (!SolveQuadratic(cos2 * GfDot(u, u) - sin2 * GfSqr(p), 2.0 * (cos2 * GfDot(u, v) - sin2 * p * q),
                        cos2 * GfDot(v, v) - sin2 * GfSqr(q), &crossing)) {
        return false;
    }
    // The equation holds on the mirrored cone beyond the apex too.
    const bool enterIsBelowApex = GfDot(unitAxis, GetPoint(crossing.enter) - apex) <= 0.0;
    const bool exitIsBelowApex = GfDot(unitAxis, GetPoint(crossing.exit) - apex) <= 0.0;
    if (!enterIsBelowApex && exitIsBelowApex) {
        crossing.enter = crossing.exit;
    } else if (enterIsBelowApex && !exitIsBelowApex) {
        crossing.exit = crossing.enter;
    }
    crossing.Report(enterDistance, exitDistance);
    return enterIsBelowApex || exitIsBelowApex;
}

std::ostream& operator<<(std::ostream& out, const GfRay& r)
{
    return out << '[' << r.GetStartPoint() << " >> " << r.GetDirection() << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
