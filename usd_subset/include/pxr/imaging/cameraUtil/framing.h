#pragma once

/// CameraUtilFraming: which pixels a camera fills.

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range2f.h>
#include <pxr/base/gf/rect2i.h>
#include <pxr/imaging/cameraUtil/api.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Where the film of a camera lies in pixel space (x right, y down): the display window, conformed by a
/// policy, is the film; the data window holds the pixels to render. As in OpenEXR.
class VESK_USD_API CameraUtilFraming final
{
public:
    /// Makes an invalid framing.
    CameraUtilFraming();
    CameraUtilFraming(const GfRange2f& displayWindow, const GfRect2i& dataWindow,
                      float pixelAspectRatio = 1.0);
    /// Takes the data window for the display window too.
    explicit CameraUtilFraming(const GfRect2i& dataWindow);

    /// Returns whether neither window is empty and the pixel aspect ratio is not 0.
    bool IsValid() const;
    bool operator==(const CameraUtilFraming& other) const;
    bool operator!=(const CameraUtilFraming& other) const;

    /// Returns the part of pixel space that the film of a camera with this width / height covers.
    GfRange2f ComputeFilmbackWindow(float cameraAspectRatio,
                                    CameraUtilConformWindowPolicy windowPolicy) const;
    /// Returns the projection for a viewport that is the data window.
    GfMatrix4d ApplyToProjectionMatrix(const GfMatrix4d& projectionMatrix,
                                       CameraUtilConformWindowPolicy windowPolicy) const;

    GfRange2f displayWindow;
    GfRect2i dataWindow;
    /// Width / height of one pixel.
    float pixelAspectRatio;
};

PXR_NAMESPACE_CLOSE_SCOPE
