#pragma once

#include <pxr/base/gf/range3f.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usd/timeCode.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <vesk/base/result.h>
#include <vesk/usd/utils/export.h>

#include <vector>

/// \file
/// Bounds of what a stage shows.
///
/// Bounds are axis-aligned, in world space, and finite or empty: a prim whose box is not finite is left out,
/// or counted by its finite points where it has any, and coordinates are cut to 1e19. The purposes are
/// default and proxy with the proxy flag, else default and render. Invisible prims do not count.
///
/// Thread: whoever may read the stage at that moment and owns the cache, as a rule a document task.
namespace vesk::usd::utils {

/// Computes the bounds of everything under a prim.
/// \param stage the stage; an expired one is an error
/// \param root the prim; the absolute root path means the whole stage, any other path without a prim is an
/// error \param time time code of the bounds; the cache keeps it \param proxyGeometry chooses the purposes;
/// the cache keeps them \param cache is reused for what it already knows; null computes afresh Returns the
/// bounds, empty when there is no geometry, or an error of the category of `UtilsError`: `InvalidStage`,
/// `InvalidPrim`.
VESK_USD_UTILS_EXPORT vesk::base::result::Result<PXR_NS::GfRange3f>
computeAlignedGeometryBounds(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage, const PXR_NS::SdfPath& root,
                             PXR_NS::UsdTimeCode time, bool proxyGeometry, PXR_NS::UsdGeomBBoxCache* cache);

/// Computes the bounds of everything under several prims together.
/// \param stage the stage; an expired one gives empty bounds
/// \param paths the prims; a path without a prim is left out, and a property path stands for its prim
/// \param proxyGeometry chooses the purposes
/// \param cache its time code is the time of the bounds; null means the default time
VESK_USD_UTILS_EXPORT PXR_NS::GfRange3f getSubSceneBounds(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage,
                                                          const std::vector<PXR_NS::SdfPath>& paths,
                                                          bool proxyGeometry,
                                                          PXR_NS::UsdGeomBBoxCache* cache);

} // namespace vesk::usd::utils
