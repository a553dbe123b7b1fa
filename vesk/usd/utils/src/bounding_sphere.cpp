#include "bounding_sphere.h"

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

double clampCoordinate(double value)
{
    constexpr double kLimit = 1e19;
    return std::clamp(value, -kLimit, kLimit);
}

std::optional<BoundingSphere> boundingSphere(const GfRange3f& bounds)
{
    GfVec3d low, high;
    for (int axis = 0; axis < 3; ++axis) {
        const float min = bounds.GetMin()[axis];
        const float max = bounds.GetMax()[axis];
        // Written so that a NaN fails it.
        if (!(min <= max) || !std::isfinite(min) || !std::isfinite(max)) return std::nullopt;
        low[axis] = clampCoordinate(min);
        high[axis] = clampCoordinate(max);
    }
    return BoundingSphere{(low + high) * 0.5, (high - low).GetLength() * 0.5};
}

BoundingSphere framedSphere(const GfRange3f& bounds)
{
    BoundingSphere sphere = boundingSphere(bounds).value_or(BoundingSphere{GfVec3d(0.0), std::sqrt(3.0)});
    if (!(sphere.radius > 0.0)) {
        // A point has no size of its own: its place is the only length at hand.
        const double away = sphere.center.GetLength();
        sphere.radius = away > 0.0 ? away * 1e-3 : 1.0;
    }
    return sphere;
}

} // namespace vesk::usd::utils
