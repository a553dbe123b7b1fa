#include "bounding_sphere.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/primFlags.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/pointBased.h>
#include <pxr/usd/usdGeom/pointInstancer.h>
#include <pxr/usd/usdGeom/tokens.h>
#include <vesk/usd/utils/bounds_utils.h>
#include <vesk/usd/utils/utils_error.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

using vesk::base::error_handling::makeErrorCode;
using vesk::base::result::Result;

TfTokenVector purposes(bool proxyGeometry)
{
    return {UsdGeomTokens->default_, proxyGeometry ? UsdGeomTokens->proxy : UsdGeomTokens->render};
}

bool isFinite(const GfVec3d& point)
{
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

// The corners of an empty box lie as far out as a float can be, also after OpenUSD took them for points, as
// it does with skeletons that have no joints.
bool isPlace(const GfVec3d& point)
{
    constexpr double kFarthest = std::numeric_limits<float>::max();
    return std::abs(point[0]) < kFarthest && std::abs(point[1]) < kFarthest && std::abs(point[2]) < kFarthest;
}

// Boxes of points that are not finite may come out empty as well.
bool isUsable(const GfRange3d& range)
{
    return !range.IsEmpty() && isPlace(range.GetMin()) && isPlace(range.GetMax());
}

bool isVisible(const UsdGeomImageable& imageable, UsdTimeCode time)
{
    TfToken visibility;
    return !imageable.GetVisibilityAttr().Get(&visibility, time) || visibility != UsdGeomTokens->invisible;
}

GfRange3d finitePoints(const UsdGeomPointBased& prim, UsdTimeCode time)
{
    GfRange3d range;
    VtArray<GfVec3f> points;
    if (!prim.GetPointsAttr().Get(&points, time)) return range;
    const GfMatrix4d toWorld = prim.ComputeLocalToWorldTransform(time);
    for (const GfVec3f& point : points) {
        const GfVec3d world = toWorld.TransformAffine(GfVec3d(point));
        if (isFinite(world)) range.UnionWith(world);
    }
    return range;
}

/// Walks the part of the stage whose boxes are empty or not finite, down to the prims that are at fault.
class FiniteBounds
{
public:
    FiniteBounds(UsdGeomBBoxCache& cache, TfTokenVector included)
        : m_cache(cache), m_time(cache.GetTime()), m_included(std::move(included))
    {}

    GfRange3d under(const UsdPrim& root)
    {
        GfRange3d total = m_cache.ComputeWorldBound(root).ComputeAlignedRange();
        if (isUsable(total)) return total;
        total = GfRange3d();
        m_open.assign(1, root);
        while (!m_open.empty()) {
            const UsdPrim prim = m_open.back();
            m_open.pop_back();
            _visit(prim, total);
        }
        return total;
    }

private:
    void _visit(const UsdPrim& prim, GfRange3d& total)
    {
        if (!_counts(prim)) return;
        const GfRange3d range = m_cache.ComputeWorldBound(prim).ComputeAlignedRange();
        if (isUsable(range)) {
            total.UnionWith(range);
            return;
        }
        if (prim.IsA<UsdGeomPointInstancer>()) return;
        if (prim.IsA<UsdGeomPointBased>()) total.UnionWith(finitePoints(UsdGeomPointBased(prim), m_time));
        for (const UsdPrim& child : prim.GetFilteredChildren(UsdTraverseInstanceProxies()))
            m_open.push_back(child);
    }

    // The cache answers for the very prim that it is asked about even when that prim is not shown.
    bool _counts(const UsdPrim& prim) const
    {
        const UsdGeomImageable imageable(prim);
        if (!imageable) return true;
        if (!isVisible(imageable, m_time)) return false;
        // A group may hold prims of other purposes than its own.
        if (!prim.GetFilteredChildren(UsdTraverseInstanceProxies()).empty()) return true;
        const TfToken purpose = imageable.ComputePurpose();
        return std::find(m_included.begin(), m_included.end(), purpose) != m_included.end();
    }

    UsdGeomBBoxCache& m_cache;
    const UsdTimeCode m_time;
    const TfTokenVector m_included;
    std::vector<UsdPrim> m_open;
};

GfRange3f narrowed(const GfRange3d& range)
{
    if (range.IsEmpty()) return GfRange3f();
    GfVec3f low, high;
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = static_cast<float>(clampCoordinate(range.GetMin()[axis]));
        high[axis] = static_cast<float>(clampCoordinate(range.GetMax()[axis]));
    }
    return GfRange3f(low, high);
}

GfRange3f boundsOf(const std::vector<UsdPrim>& prims, UsdGeomBBoxCache& cache, bool proxyGeometry)
{
    const TfTokenVector included = purposes(proxyGeometry);
    cache.SetIncludedPurposes(included);
    FiniteBounds bounds(cache, included);
    GfRange3d total;
    for (const UsdPrim& prim : prims)
        total.UnionWith(bounds.under(prim));
    return narrowed(total);
}

} // namespace

Result<GfRange3f> computeAlignedGeometryBounds(const TfWeakPtr<UsdStage>& stage, const SdfPath& root,
                                               UsdTimeCode time, bool proxyGeometry, UsdGeomBBoxCache* cache)
{
    const UsdStageRefPtr strong = TfCreateRefPtrFromProtectedWeakPtr(stage);
    if (!strong) return makeErrorCode(UtilsError::InvalidStage);
    const bool isPath = root.IsAbsoluteRootOrPrimPath();
    const UsdPrim prim = isPath ? strong->GetPrimAtPath(root) : UsdPrim();
    if (!prim) return makeErrorCode(UtilsError::InvalidPrim);
    if (!cache) {
        UsdGeomBBoxCache fresh(time, purposes(proxyGeometry));
        return boundsOf({prim}, fresh, proxyGeometry);
    }
    if (cache->GetTime() != time) {
        // The cache would keep boxes that are computed from animated sizes and points: it looks at extents
        // alone to tell what varies.
        cache->Clear();
        cache->SetTime(time);
    }
    return boundsOf({prim}, *cache, proxyGeometry);
}

GfRange3f getSubSceneBounds(const TfWeakPtr<UsdStage>& stage, const std::vector<SdfPath>& paths,
                            bool proxyGeometry, UsdGeomBBoxCache* cache)
{
    const UsdStageRefPtr strong = TfCreateRefPtrFromProtectedWeakPtr(stage);
    if (!strong) return GfRange3f();
    std::vector<UsdPrim> prims;
    for (const SdfPath& path : paths) {
        if (path.IsEmpty() || !path.IsAbsolutePath()) continue;
        const SdfPath primPath = path.IsAbsoluteRootPath() ? path : path.GetPrimPath();
        if (const UsdPrim prim = strong->GetPrimAtPath(primPath)) prims.push_back(prim);
    }
    if (cache) return boundsOf(prims, *cache, proxyGeometry);
    UsdGeomBBoxCache fresh(UsdTimeCode::Default(), purposes(proxyGeometry));
    return boundsOf(prims, fresh, proxyGeometry);
}

} // namespace vesk::usd::utils
