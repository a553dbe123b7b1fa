#include "hydra_view.h"

#include <pxr/base/gf/frustum.h>
#include <vesk/renderers/picture/camera_rays.h>

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

std::optional<HydraView> HydraView::make(const GfCamera& camera, CameraUtilConformWindowPolicy policy,
                                         const GfVec2i& size)
{
    // What can be seen through is the same for all renderers.
    if (!picture::CameraRays::make(camera, policy, size, GfVec3d(0.0), 1.0f)) return {};
    GfFrustum frustum = camera.GetFrustum();
    CameraUtilConformWindow(&frustum, policy, static_cast<double>(size[0]) / static_cast<double>(size[1]));
    HydraView made;
    made.perspective = camera.GetProjection() == GfCamera::Perspective;
    made.far = frustum.GetNearFar().GetMax();
    made.near = frustum.GetNearFar().GetMin();
    if (made.perspective) {
        if (!(made.far > 0.0)) return {};
        // A depth buffer has no room for what lies at the eye.
        made.near = std::max(made.near, made.far * 1e-7);
        frustum.SetNearFar(GfRange1d(made.near, made.far));
    }
    made.view = frustum.ComputeViewMatrix();
    made.projection = frustum.ComputeProjectionMatrix();
    for (const GfVec4f& plane : camera.GetClippingPlanes())
        made.clipPlanes.emplace_back(plane);
    return made;
}

double HydraView::viewDistance(double depth) const
{
    if (!perspective) return near + depth * (far - near);
    return near * far / (far - depth * (far - near));
}

GfMatrix4d HydraView::projectionOf(const GfVec2i& pictureSize, double left, double top, double width,
                                   double height) const
{
    const double w = pictureSize[0];
    const double h = pictureSize[1];
    const GfVec3d center((left + 0.5 * width) / w * 2.0 - 1.0, 1.0 - (top + 0.5 * height) / h * 2.0, 0.0);
    return projection * GfMatrix4d(1.0).SetTranslate(-center) *
           GfMatrix4d(1.0).SetScale(GfVec3d(w / width, h / height, 1.0));
}

GfMatrix4d HydraView::shiftedProjection(const GfVec2i& pictureSize, const GfVec2d& pixels) const
{
    return projection * GfMatrix4d(1.0).SetTranslate(
                            GfVec3d(2.0 * pixels[0] / pictureSize[0], 2.0 * pixels[1] / pictureSize[1], 0.0));
}

} // namespace vesk::renderers::hydra
