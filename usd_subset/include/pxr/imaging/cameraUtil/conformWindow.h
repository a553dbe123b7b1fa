#pragma once

/// Makes what a camera sees fit the shape of an image.

#include <pxr/imaging/cameraUtil/api.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class GfCamera;
class GfFrustum;
class GfMatrix4d;
class GfRange2d;
class GfVec2d;
class GfVec4d;

/// What to change where the width / height of the window is not that of the image.
enum CameraUtilConformWindowPolicy
{
    CameraUtilMatchVertically,   ///< keep the height, change the width
    CameraUtilMatchHorizontally, ///< keep the width, change the height
    CameraUtilFit,               ///< enlarge one of both: nothing is lost
    CameraUtilCrop,              ///< reduce one of both: nothing is added
    CameraUtilDontConform        ///< keep both: the image is stretched
};

/// \name The conformed window, with its centre where it was
/// @{
VESK_USD_API GfRange2d CameraUtilConformedWindow(const GfRange2d& window,
                                                 CameraUtilConformWindowPolicy policy, double targetAspect);
/// The window is (left, right, bottom, top).
VESK_USD_API GfVec4d CameraUtilConformedWindow(const GfVec4d& window, CameraUtilConformWindowPolicy policy,
                                               double targetAspect);
/// The window is (width, height).
VESK_USD_API GfVec2d CameraUtilConformedWindow(const GfVec2d& window, CameraUtilConformWindowPolicy policy,
                                               double targetAspect);
/// Scales the columns of a projection matrix; mirrored ones stay mirrored.
VESK_USD_API GfMatrix4d CameraUtilConformedWindow(const GfMatrix4d& projectionMatrix,
                                                  CameraUtilConformWindowPolicy policy, double targetAspect);
/// @}

/// Changes the apertures.
VESK_USD_API void CameraUtilConformWindow(GfCamera* camera, CameraUtilConformWindowPolicy policy,
                                          double targetAspect);
/// Changes the window.
VESK_USD_API void CameraUtilConformWindow(GfFrustum* frustum, CameraUtilConformWindowPolicy policy,
                                          double targetAspect);

PXR_NAMESPACE_CLOSE_SCOPE
