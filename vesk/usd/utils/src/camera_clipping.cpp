#include "bounding_sphere.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <pxr/base/gf/range1f.h>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

// Depth buffers and float rays keep their precision below this ratio of far to near.
constexpr double kMaxRatio = 1e5;
// Ranges are kept where far, near and their ratio are ordinary floats.
constexpr double kSmallest = 1e-30;
constexpr double kLargest = 1e37;

struct Interval
{
    double near;
    double far;
};

double finiteOr(double value, double fallback) { return std::isfinite(value) ? value : fallback; }

// The nearest floats that still enclose the interval.
GfRange1f enclosingFloats(const Interval& interval)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    float low = static_cast<float>(std::clamp(interval.near, -kLargest, kLargest));
    float high = static_cast<float>(std::clamp(interval.far, -kLargest, kLargest));
    if (low > interval.near) low = std::nextafter(low, -kInfinity);
    if (high < interval.far) high = std::nextafter(high, kInfinity);
    if (!(low < high)) high = std::nextafter(low, kInfinity);
    return GfRange1f(low, high);
}

bool isValidRange(const GfRange1f& range, bool perspective)
{
    const double low = range.GetMin();
    const double high = range.GetMax();
    if (!std::isfinite(low) || !std::isfinite(high) || !(low < high)) return false;
    return !perspective || (low > 0.0 && high <= 1e6 * low);
}

// The farthest that a point of the bounds lies from the pivot, whatever the camera's direction.
std::optional<double> reach(const GfMatrix4d& transform, double distanceToCenter, const GfRange3f& bounds)
{
    const std::optional<BoundingSphere> sphere = boundingSphere(bounds);
    if (!sphere) return std::nullopt;
    const GfVec3d w = getCameraWDir(transform);
    const double length = w.GetLength();
    if (!(length > 0.0) || !std::isfinite(length)) return std::nullopt;
    const GfVec3d pivot = getCameraPosition(transform) - w * (distanceToCenter / length);
    const double result = (pivot - sphere->center).GetLength() + sphere->radius;
    if (!std::isfinite(result)) return std::nullopt;
    return result;
}

// Without bounds only the distance says how large things are.
std::optional<Interval> intervalFromDistance(double distance)
{
    if (!(distance > kSmallest)) return std::nullopt;
    return Interval{distance * 1e-2, distance * 1e3};
}

Interval perspectiveInterval(Interval interval, double span)
{
    // All of the scene lies behind the camera: a range of the scene's own size keeps the camera usable.
    if (!(interval.far > 0.0)) interval.far = span;
    interval.far = std::clamp(interval.far, kSmallest, kLargest);
    interval.near = std::max(interval.near, interval.far / kMaxRatio);
    if (!(interval.near < interval.far)) interval.near = interval.far / kMaxRatio;
    return interval;
}

} // namespace

void updateGfCameraNearFar(GfCamera& camera, bool /*zUp*/, float distanceToCenter, float distance,
                           const GfRange3f& bounds)
{
    const bool perspective = camera.GetProjection() == GfCamera::Perspective;
    const double toPivot = finiteOr(distanceToCenter, 0.0);
    const double other = finiteOr(distance, toPivot);
    const double span = std::max(std::abs(toPivot), std::abs(other));

    std::optional<Interval> interval;
    if (const std::optional<double> radius = reach(camera.GetTransform(), toPivot, bounds)) {
        // A little room, so that nothing lies exactly on a plane.
        const double room = std::max(*radius * 1e-3, span * 1e-6);
        const double extent = *radius + room;
        interval = Interval{std::min(toPivot, other) - extent, std::max(toPivot, other) + extent};
        if (!(extent + span > kSmallest)) interval.reset();
        if (interval && perspective) interval = perspectiveInterval(*interval, extent + span);
    }
    if (!interval) interval = intervalFromDistance(span);
    if (interval)
        camera.SetClippingRange(enclosingFloats(*interval));
    else if (!isValidRange(camera.GetClippingRange(), perspective))
        camera.SetClippingRange(GfCamera().GetClippingRange());
}

} // namespace vesk::usd::utils
