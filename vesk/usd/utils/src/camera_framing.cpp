#include "bounding_sphere.h"

#include <algorithm>
#include <cmath>
#include <pxr/base/gf/vec3d.h>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;
// The narrowest window, width over height, in which a framed box keeps all its corners.
constexpr double kNarrowestAspect = 9.0 / 16.0;
// Keeps a corner that touches the sphere off the window's very edge.
constexpr double kRoom = 1.005;
// Beyond these a camera's apertures would no longer fit into a float.
constexpr double kLongestDistance = 1e30;
constexpr double kWidestAspect = 1e4;

struct Axes
{
    GfVec3d u, v, w;
};

bool isFinite(const GfVec3d& vector)
{
    return std::isfinite(vector[0]) && std::isfinite(vector[1]) && std::isfinite(vector[2]);
}

double positiveOr(double value, double fallback)
{
    return std::isfinite(value) && value > 0.0 ? value : fallback;
}

double usableFieldOfView(float degrees) { return std::clamp(positiveOr(degrees, 45.0), 0.01, 179.0); }

double perspectiveDistance(double radius, float fieldOfView, double factor)
{
    const double half = usableFieldOfView(fieldOfView) * 0.5 * kRadiansPerDegree;
    const double narrowHalf = std::atan(kNarrowestAspect * std::tan(half));
    return std::max(factor * radius / std::sin(half), kRoom * radius / std::sin(narrowHalf));
}

double orthographicDistance(double radius, double factor)
{
    return std::max(factor * 2.0 * radius, kRoom * 2.0 * radius / kNarrowestAspect);
}

// Scales first, so that neither huge nor tiny vectors lose their length.
bool normalize(GfVec3d& vector)
{
    const double largest = std::max({std::abs(vector[0]), std::abs(vector[1]), std::abs(vector[2])});
    if (!isFinite(vector) || !(largest > 0.0)) return false;
    vector /= largest;
    vector /= vector.GetLength();
    return true;
}

// Removes from `vector` what lies along the unit vector `axis`; false when too little is left to go by.
bool makePerpendicular(GfVec3d& vector, const GfVec3d& axis)
{
    if (!normalize(vector)) return false;
    vector -= axis * GfDot(vector, axis);
    return vector.GetLength() > 1e-6 && normalize(vector);
}

// The camera's own axes made orthonormal: W first, since it is the direction of the view.
Axes axesOf(const GfMatrix4d& transform)
{
    const Axes identity{GfVec3d(1, 0, 0), GfVec3d(0, 1, 0), GfVec3d(0, 0, 1)};
    GfVec3d w = getCameraWDir(transform);
    if (!normalize(w)) return identity;
    GfVec3d v = getCameraVDir(transform);
    if (makePerpendicular(v, w)) return Axes{GfCross(v, w), v, w};
    GfVec3d u = getCameraUDir(transform);
    if (makePerpendicular(u, w)) return Axes{u, GfCross(w, u), w};
    return identity;
}

// Axes that look along minus `direction` with no roll against the world's up axis.
Axes axesFrom(const GfVec3d& direction, bool zUp)
{
    GfVec3d w = direction;
    if (!normalize(w)) w = GfVec3d(frontViewDirection(zUp));
    GfVec3d u = GfCross(getVec3dUpDir(zUp), w);
    // Straight from above or below there is no up: +X to the right serves both.
    if (!(u.GetLength() > 1e-9) || !normalize(u)) u = GfVec3d(1.0, 0.0, 0.0);
    return Axes{u, GfCross(w, u), w};
}

bool becomesOrthographic(ProjectionType projection, const GfCamera& current)
{
    if (projection == ProjectionType::Perspective) return false;
    return projection == ProjectionType::Orthographic || current.GetProjection() == GfCamera::Orthographic;
}

GfMatrix4d transformOf(const Axes& axes, const GfVec3d& position)
{
    GfMatrix4d transform(1.0);
    const GfVec3d* rows[] = {&axes.u, &axes.v, &axes.w, &position};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 3; ++column)
            transform[row][column] = (*rows[row])[column];
    }
    return transform;
}

GfCamera framedCamera(const GfRange3f& range, const GfCamera& current, const Axes& axes,
                      ProjectionType projection, float fieldOfView, float distanceToCenter, float factor)
{
    const bool orthographic = becomesOrthographic(projection, current);
    const BoundingSphere sphere = framedSphere(range);
    float distance = distanceToCenter;
    if (!(distance > 0.0f && distance <= kLongestDistance))
        distance = getDistanceToCenter(
            range, orthographic ? ProjectionType::Orthographic : ProjectionType::Perspective, fieldOfView,
            factor);

    GfCamera camera = current;
    camera.SetTransform(transformOf(axes, sphere.center + axes.w * static_cast<double>(distance)));
    camera.SetHorizontalApertureOffset(0.0f);
    camera.SetVerticalApertureOffset(0.0f);
    const float aspect = static_cast<float>(
        std::clamp(positiveOr(current.GetAspectRatio(), 1.0), 1.0 / kWidestAspect, kWidestAspect));
    if (orthographic) {
        camera.SetOrthographicFromAspectRatioAndSize(aspect, distance, GfCamera::FOVVertical);
    } else {
        const double aperture =
            positiveOr(current.GetHorizontalAperture(), GfCamera::DEFAULT_HORIZONTAL_APERTURE);
        camera.SetPerspectiveFromAspectRatioAndFieldOfView(
            aspect, static_cast<float>(usableFieldOfView(fieldOfView)), GfCamera::FOVVertical,
            static_cast<float>(aperture));
    }
    camera.SetFocusDistance(distance);
    updateGfCameraNearFar(camera, false, distance, distance, range);
    return camera;
}

} // namespace

float getDistanceToCenter(const GfRange3f& range, ProjectionType projection, float fieldOfView, float factor)
{
    const double radius = framedSphere(range).radius;
    const double space = positiveOr(factor, 1.0);
    const double perspective = perspectiveDistance(radius, fieldOfView, space);
    const double orthographic = orthographicDistance(radius, space);
    double distance = std::max(perspective, orthographic);
    if (projection == ProjectionType::Perspective) distance = perspective;
    if (projection == ProjectionType::Orthographic) distance = orthographic;
    return static_cast<float>(std::clamp(distance, 1e-30, kLongestDistance));
}

GfCamera getFramedBBoxGfCamera(const GfRange3f& range, const GfCamera& current, ProjectionType projection,
                               float fieldOfView, float distanceToCenter, float factor)
{
    return framedCamera(range, current, axesOf(current.GetTransform()), projection, fieldOfView,
                        distanceToCenter, factor);
}

GfCamera getFramedBBoxGfCameraWithDirection(const GfRange3f& range, const GfCamera& current,
                                            const GfVec3d& direction, bool zUp, ProjectionType projection,
                                            float fieldOfView, float distanceToCenter, float factor)
{
    return framedCamera(range, current, axesFrom(direction, zUp), projection, fieldOfView, distanceToCenter,
                        factor);
}

} // namespace vesk::usd::utils
