#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>

#include <optional>
#include <vector>

namespace vesk::renderers::hydra {

/// A camera as Hydra takes it, fitted into a picture.
struct HydraView
{
    PXR_NS::GfMatrix4d view{1.0};       ///< from the world to the camera
    PXR_NS::GfMatrix4d projection{1.0}; ///< from the camera to the picture, from -1 to 1 each way
    std::vector<PXR_NS::GfVec4d> clipPlanes;
    double near = 0.0;
    double far = 1.0;
    bool perspective = true;

    /// Returns nothing for a camera without a usable view.
    static std::optional<HydraView> make(const PXR_NS::GfCamera& camera,
                                         PXR_NS::CameraUtilConformWindowPolicy policy,
                                         const PXR_NS::GfVec2i& size);

    /// The distance along the view axis of a value of the depth buffer, from 0 (near plane) to 1 (far plane).
    double viewDistance(double depth) const;

    /// The projection that shows a rectangle of a picture alone, in pixels with (0, 0) at the top left.
    PXR_NS::GfMatrix4d projectionOf(const PXR_NS::GfVec2i& pictureSize, double left, double top, double width,
                                    double height) const;

    /// The projection with the picture shifted by a part of a pixel.
    PXR_NS::GfMatrix4d shiftedProjection(const PXR_NS::GfVec2i& pictureSize,
                                         const PXR_NS::GfVec2d& pixels) const;
};

} // namespace vesk::renderers::hydra
