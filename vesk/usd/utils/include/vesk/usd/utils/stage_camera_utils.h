#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/stage.h>
#include <vesk/base/result.h>
#include <vesk/usd/utils/export.h>

/// \file
/// Cameras on a stage. Use it through camera_utils.h.
///
/// Thread: whoever may read or write the stage at that moment, as a rule a document task.
namespace vesk::usd::utils {

/// Reads the camera prim at a path, in world space.
/// \param stage the stage; an expired one is an error
/// \param path of a UsdGeomCamera prim; anything else is an error
/// \param time time code; NaN is the default time
/// Returns the camera or an error of the category of `UtilsError`: `InvalidStage`, `InvalidCameraPrim`.
VESK_USD_UTILS_EXPORT vesk::base::result::Result<PXR_NS::GfCamera>
getGfCameraFromCameraPath(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage, const PXR_NS::SdfPath& path,
                          double time);

/// Authors a camera onto the camera prim at a path, so that the prim's camera in world space is that camera.
///
/// The prim's own camera is read first: when no number differs in any bit, nothing is authored. Two NaNs
/// count as the same number. Nor is anything authored when only the transforms differ, and by no more than
/// the rounding on the way through a parent that has a transform: that is all that a viewport which reads a
/// camera, cleans it and writes it again would add, without end.
/// \param stage the stage; its edit target gets the opinions
/// \param path of a UsdGeomCamera prim
/// \param camera the camera in world space
/// \param time time code; NaN is the default time
/// Throws: `Exception` with a code of the category of `UtilsError` and a detail text that names the path:
/// `InvalidStage`; `InvalidCameraPrim`; `SingularParentTransform` when the transform of the prim's parent
/// cannot be inverted; `AuthoringFailed` when the scene description refused an opinion or a stronger one
/// hides it. Nothing is authored in the first three cases.
VESK_USD_UTILS_EXPORT void setGfCameraForCameraPath(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage,
                                                    const PXR_NS::SdfPath& path,
                                                    const PXR_NS::GfCamera& camera, double time);

/// Says whether the stage's up axis is Z. Every other up axis, authored or not, counts as Y.
/// Returns the answer, or the error `InvalidStage` for an expired stage.
VESK_USD_UTILS_EXPORT vesk::base::result::Result<bool>
stageIsZUp(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage);

} // namespace vesk::usd::utils
