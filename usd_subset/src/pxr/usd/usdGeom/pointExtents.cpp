#include "pxr/usd/usdGeom/extents.h"
#include "pxr/usd/usdGeom/fourFloats.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/usd/usdGeom/boundableComputeExtent.h>
#include <pxr/usd/usdGeom/curves.h>
#include <pxr/usd/usdGeom/points.h>
#include <pxr/usd/usdGeom/sphere.h>

#include <algorithm>
#include <limits>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// The coordinates of so many points fill three times four floats, whichever coordinates each of these has.
constexpr size_t kGroup = 4;

/// Widens a box by groups of points, four coordinates at once.
void _AddGroups(const GfVec3f* points, size_t groups, GfRange3d* range)
{
    using Floats = UsdGeom_FourFloats;
    const auto* coordinates = reinterpret_cast<const float*>(points);
    const Floats none(std::numeric_limits<float>::max()), noneBelow(std::numeric_limits<float>::lowest());
    Floats least[3] = {none, none, none};
    Floats most[3] = {noneBelow, noneBelow, noneBelow};
    for (size_t group = 0; group != groups; ++group) {
        for (size_t i = 0; i != 3; ++i, coordinates += 4) {
            const Floats values(coordinates);
            least[i].Min(values);
            most[i].Max(values);
        }
    }
    float low[3 * kGroup], high[3 * kGroup];
    for (size_t i = 0; i != 3; ++i) {
        least[i].Store(low + 4 * i);
        most[i].Store(high + 4 * i);
    }
    for (size_t i = 0; i != 3 * kGroup; i += 3) {
        range->UnionWith(GfRange3d(GfVec3d(GfVec3f(low + i)), GfVec3d(GfVec3f(high + i))));
    }
}

/// The box around points, moved by a matrix where that is not null.
bool _SetPointExtent(const VtVec3fArray& points, const GfMatrix4d* transform, VtVec3fArray* extent)
{
    GfRange3d range;
    const GfVec3f* point = points.cdata();
    const GfVec3f* const end = point + points.size();
    if (!transform) {
        const size_t groups = points.size() / kGroup;
        _AddGroups(point, groups, &range);
        point += groups * kGroup;
    }
    for (; point != end; ++point) {
        range.UnionWith(transform ? GfVec3d(transform->Transform(*point)) : GfVec3d(*point));
    }
    UsdGeom_SetExtent(GfVec3f(range.GetMin()), GfVec3f(range.GetMax()), extent);
    return true;
}

/// The corners of the box around a sphere about the origin, turned and scaled by a matrix.
VtVec3fArray _SphereCorners(double radius, const GfMatrix4d* transform)
{
    VtVec3fArray corners;
    if (transform) {
        GfMatrix4d direction(*transform);
        direction.SetTranslateOnly(GfVec3d(0.0));
        UsdGeomSphere::ComputeExtent(radius, direction, &corners);
    } else {
        UsdGeom_SetExtent(GfVec3f(static_cast<float>(-radius)), GfVec3f(static_cast<float>(radius)),
                          &corners);
    }
    return corners;
}

bool _SetCurveExtent(const VtVec3fArray& points, const VtFloatArray& widths, const GfMatrix4d* transform,
                     VtVec3fArray* extent)
{
    const float maxWidth = widths.empty() ? 0.0f : *std::max_element(widths.cbegin(), widths.cend());
    _SetPointExtent(points, transform, extent);
    const VtVec3fArray corners = _SphereCorners(maxWidth * 0.5, transform);
    (*extent)[0] += corners[0];
    (*extent)[1] += corners[1];
    return true;
}

bool _SetWidePointExtent(const VtVec3fArray& points, const VtFloatArray& widths, const GfMatrix4d* transform,
                         VtVec3fArray* extent)
{
    if (points.size() != widths.size()) {
        return false;
    }
    GfRange3d range;
    for (size_t i = 0; i < points.size(); ++i) {
        const float halfWidth = static_cast<float>(widths[i] * 0.5);
        const GfVec3f point = transform ? GfVec3f(transform->Transform(points[i])) : points[i];
        const VtVec3fArray corners = _SphereCorners(halfWidth, transform);
        range.UnionWith(GfVec3d(point + corners[0]));
        range.UnionWith(GfVec3d(point + corners[1]));
    }
    UsdGeom_SetExtent(GfVec3f(range.GetMin()), GfVec3f(range.GetMax()), extent);
    return true;
}

bool _ComputePointBased(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                        const GfMatrix4d* transform, VtVec3fArray* extent)
{
    VtVec3fArray points;
    return UsdGeomPointBased(boundable).GetPointsAttr().Get(&points, time) &&
           _SetPointExtent(points, transform, extent);
}

bool _ComputeCurves(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                    VtVec3fArray* extent)
{
    const UsdGeomCurves curves(boundable);
    VtVec3fArray points;
    VtFloatArray widths;
    curves.GetWidthsAttr().Get(&widths, time);
    return curves.GetPointsAttr().Get(&points, time) && _SetCurveExtent(points, widths, transform, extent);
}

bool _ComputePoints(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                    VtVec3fArray* extent)
{
    const UsdGeomPoints schema(boundable);
    VtVec3fArray points;
    VtFloatArray widths;
    if (!schema.GetPointsAttr().Get(&points, time)) {
        return false;
    }
    return schema.GetWidthsAttr().Get(&widths, time) ? _SetWidePointExtent(points, widths, transform, extent)
                                                     : _SetPointExtent(points, transform, extent);
}

} // namespace

TF_REGISTRY_FUNCTION(UsdGeomBoundable)
{
    UsdGeomRegisterComputeExtentFunction<UsdGeomPointBased>(_ComputePointBased);
    UsdGeomRegisterComputeExtentFunction<UsdGeomCurves>(_ComputeCurves);
    UsdGeomRegisterComputeExtentFunction<UsdGeomPoints>(_ComputePoints);
}

bool UsdGeomPointBased::ComputeExtent(const VtVec3fArray& points, VtVec3fArray* extent)
{
    return _SetPointExtent(points, nullptr, extent);
}

bool UsdGeomPointBased::ComputeExtent(const VtVec3fArray& points, const GfMatrix4d& transform,
                                      VtVec3fArray* extent)
{
    return _SetPointExtent(points, &transform, extent);
}

bool UsdGeomCurves::ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths,
                                  VtVec3fArray* extent)
{
    return _SetCurveExtent(points, widths, nullptr, extent);
}

bool UsdGeomCurves::ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths,
                                  const GfMatrix4d& transform, VtVec3fArray* extent)
{
    return _SetCurveExtent(points, widths, &transform, extent);
}

bool UsdGeomPoints::ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths,
                                  VtVec3fArray* extent)
{
    return _SetWidePointExtent(points, widths, nullptr, extent);
}

bool UsdGeomPoints::ComputeExtent(const VtVec3fArray& points, const VtFloatArray& widths,
                                  const GfMatrix4d& transform, VtVec3fArray* extent)
{
    return _SetWidePointExtent(points, widths, &transform, extent);
}

PXR_NAMESPACE_CLOSE_SCOPE
