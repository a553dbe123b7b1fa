#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/imaging/cameraUtil/framing.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

double DivideOrOne(double a, double b) { return b == 0.0 ? 1.0 : a / b; }

template <class Window>
GfVec2f Center(const Window& window)
{
    return GfVec2f(window.GetMin()) + 0.5 * GfVec2f(window.GetSize());
}

// Enlarging what the camera sees makes its film a smaller part of the window.
CameraUtilConformWindowPolicy OppositePolicy(CameraUtilConformWindowPolicy policy)
{
    if (policy == CameraUtilFit) {
        return CameraUtilCrop;
    }
    return policy == CameraUtilCrop ? CameraUtilFit : policy;
}

} // namespace

CameraUtilFraming::CameraUtilFraming() : pixelAspectRatio(1.0f) {}

CameraUtilFraming::CameraUtilFraming(const GfRange2f& displayWindow_, const GfRect2i& dataWindow_,
                                     float pixelAspectRatio_)
    : displayWindow(displayWindow_), dataWindow(dataWindow_), pixelAspectRatio(pixelAspectRatio_)
{}

CameraUtilFraming::CameraUtilFraming(const GfRect2i& dataWindow_)
    : CameraUtilFraming(GfRange2f(GfVec2f(dataWindow_.GetMin()), GfVec2f(dataWindow_.GetMax() + GfVec2i(1))),
                        dataWindow_)
{}

bool CameraUtilFraming::IsValid() const
{
    return !dataWindow.IsEmpty() && !displayWindow.IsEmpty() && pixelAspectRatio != 0.0f;
}

bool CameraUtilFraming::operator==(const CameraUtilFraming& other) const
{
    return displayWindow == other.displayWindow && dataWindow == other.dataWindow &&
           pixelAspectRatio == other.pixelAspectRatio;
}

bool CameraUtilFraming::operator!=(const CameraUtilFraming& other) const { return !(*this == other); }

GfRange2f CameraUtilFraming::ComputeFilmbackWindow(float cameraAspectRatio,
                                                   CameraUtilConformWindowPolicy windowPolicy) const
{
    return GfRange2f(CameraUtilConformedWindow(GfRange2d(displayWindow), OppositePolicy(windowPolicy),
                                               DivideOrOne(cameraAspectRatio, pixelAspectRatio)));
}

GfMatrix4d CameraUtilFraming::ApplyToProjectionMatrix(const GfMatrix4d& projectionMatrix,
                                                      CameraUtilConformWindowPolicy windowPolicy) const
{
    const GfVec2f displaySize = displayWindow.GetSize();
    const GfVec2f dataSize = dataWindow.GetSize();
    const double aspect = pixelAspectRatio * DivideOrOne(displaySize[0], displaySize[1]);
    const GfVec2f offset = 2.0f * (Center(displayWindow) - Center(dataWindow));
    // From -1 to 1 over the display window to units of half a pixel, then to -1 to 1 over the data window;
    // pixels count downwards.
    GfMatrix4d translation;
    translation.SetTranslate(GfVec3d(offset[0], -offset[1], 0.0));
    return CameraUtilConformedWindow(projectionMatrix, windowPolicy, aspect) *
           GfMatrix4d(GfVec4d(displaySize[0], displaySize[1], 1.0, 1.0)) * translation *
           GfMatrix4d(GfVec4d(1.0 / dataSize[0], 1.0 / dataSize[1], 1.0, 1.0));
}

PXR_NAMESPACE_CLOSE_SCOPE
