#include <pxr/base/gf/math.h>
#include <pxr/base/gf/matrix2d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/base/gf/plane.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/tf/diagnostic.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

void GfPlane::Set(const GfVec3d& normal, const GfVec3d& point)
{
    _normal = normal.GetNormalized();
    _distance = GfDot(_normal, point);
}

void GfPlane::Set(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2)
{
    Set(GfCross(p1 - p0, p2 - p0), p0);
}

void GfPlane::Set(const GfVec4d& eqn)
{
    _normal = GfVec3d(eqn.data());
    _distance = -eqn[3];
    const double length = _normal.Normalize();
    if (length != 0.0) {
        _distance /= length;
    }
}

GfVec4d GfPlane::GetEquation() const { return GfVec4d(_normal[0], _normal[1], _normal[2], -_distance); }

GfPlane& GfPlane::Transform(const GfMatrix4d& matrix)
{
    // Equations transform by the transposed inverse, unlike points.
    Set(GetEquation() * matrix.GetInverse().GetTranspose());
    return *this;
}

bool GfPlane::IntersectsPositiveHalfSpace(const GfRange3d& box) const
{
    if (box.IsEmpty()) {
        return false;
    }
    // The corner that is furthest in the direction of the normal decides.
    double furthest = 0.0;
    for (int i = 0; i != 3; ++i) {
        furthest += _normal[i] * (_normal[i] >= 0 ? box.GetMax()[i] : box.GetMin()[i]);
    }
    return furthest >= _distance;
}

namespace {

// Fits the plane through the origin whose normal has 1 as component fixed: the squared distances along that
// axis are least. moments[i][j] is the sum of the points' coordinates i times j.
struct AxisFit
{
    AxisFit(const double moments[3][3], int fixed)
        : a(fixed == 0 ? 1 : 0),
          b(fixed == 2 ? 1 : 2),
          c(fixed),
          ata(moments[a][a], moments[a][b], moments[a][b], moments[b][b]),
          atb(-moments[a][c], -moments[b][c]),
          determinant(GfAbs(ata.GetDeterminant()))
    {}

    GfVec3d Normal() const
    {
        const GfVec2d solution = ata.GetInverse() * atb;
        GfVec3d normal;
        normal[a] = solution[0];
        normal[b] = solution[1];
        normal[c] = 1.0;
        return normal;
    }

    int a, b, c;
    GfMatrix2d ata;
    GfVec2d atb;
    double determinant;
};

} // namespace

bool GfFitPlaneToPoints(const std::vector<GfVec3d>& points, GfPlane* fitPlane)
{
    if (points.size() < 3) {
        TF_CODING_ERROR("Need three points to correctly fit a plane");
        return false;
    }
    GfVec3d sum(0.0);
    for (const GfVec3d& p : points) {
        sum += p;
    }
    const GfVec3d centroid = sum / static_cast<double>(points.size());

    double moments[3][3] = {};
    for (const GfVec3d& p : points) {
        const GfVec3d offset = p - centroid;
        for (int i = 0; i != 3; ++i) {
            for (int j = 0; j != 3; ++j) {
                moments[i][j] += offset[i] * offset[j];
            }
        }
    }
    // The best conditioned of the three fits.
    const AxisFit x(moments, 0), y(moments, 1), z(moments, 2);
    const AxisFit* fit = &z;
    if (x.determinant > y.determinant && x.determinant > z.determinant) {
        fit = &x;
    } else if (y.determinant > z.determinant) {
        fit = &y;
    }
    if (!(fit->determinant > 0.0)) {
        return false;
    }
    const GfVec3d normal = fit->Normal();
    fitPlane->Set(GfVec4d(normal[0], normal[1], normal[2], -GfDot(normal, centroid)));
    return true;
}

std::ostream& operator<<(std::ostream& out, const GfPlane& p)
{
    return out << '[' << p.GetNormal() << " " << Gf_OstreamHelperP(p.GetDistanceFromOrigin()) << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
