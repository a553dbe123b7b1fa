#include "bounding_sphere.h"

#include <cmath>
#include <limits>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

// Whether a float can hold the length with its full precision. Written so that a NaN fails it.
bool isLength(double value)
{
    return value >= std::numeric_limits<float>::min() && value <= std::numeric_limits<float>::max();
}

// A distance to the bounds' centre below this part of the radius would leave a gesture nothing to work with.
constexpr double kNothing = 1e-3;

} // namespace

float getGfCameraDistanceToCenter(const GfCamera& camera, const GfRange3f& bounds)
{
    const GfMatrix4d transform = camera.GetTransform();
    const GfVec3d position = getCameraPosition(transform);
    if (const std::optional<BoundingSphere> sphere = boundingSphere(bounds)) {
        const GfVec3d toCenter = sphere->center - position;
        const GfVec3d w = getCameraWDir(transform);
        const double least = sphere->radius * kNothing;
        const double depth = -GfDot(toCenter, w) / w.GetLength();
        if (isLength(depth) && depth >= least) return static_cast<float>(depth);
        const double away = toCenter.GetLength();
        if (isLength(away) && away >= least) return static_cast<float>(away);
        if (isLength(sphere->radius)) return static_cast<float>(sphere->radius);
    }
    if (isLength(camera.GetFocusDistance())) return camera.GetFocusDistance();
    const double toOrigin = position.GetLength();
    if (isLength(toOrigin)) return static_cast<float>(toOrigin);
    if (isLength(camera.GetClippingRange().GetMin())) return camera.GetClippingRange().GetMin();
    return 1.0f;
}

void checkGfCameraFocusDistance(GfCamera& camera, const GfRange3f& bounds)
{
    const float focus = camera.GetFocusDistance();
    if ((focus > 0.0f && std::isfinite(focus)) || !boundingSphere(bounds)) return;
    camera.SetFocusDistance(getGfCameraDistanceToCenter(camera, bounds));
}

} // namespace vesk::usd::utils
