#include "camera_fitting.h"

#include "camera_navigation.h"

#include <cmath>
#include <pxr/base/gf/vec4d.h>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

using namespace vesk::usd::utils;

namespace {

bool mirroredAxesTurned(GfMatrix4d& transform)
{
    static const GfMatrix4d mirror(GfVec4d(-1.0, 1.0, 1.0, 1.0));
    if (transform.GetHandedness() != -1.0) return false;
    transform = mirror * transform;
    return true;
}

bool hasUnusualAxes(const GfMatrix4d& transform)
{
    const GfVec3d sum = getCameraUDir(transform) + getCameraVDir(transform) + getCameraWDir(transform);
    const float deviation = static_cast<float>(sum.GetLength() / std::sqrt(3.0)) - 1.0f;
    return static_cast<double>(std::fabs(deviation)) > 1e-6;
}

void normalizeAxes(GfMatrix4d& transform)
{
    for (int row = 0; row < 3; ++row) {
        double length = GfVec3d(transform[row][0], transform[row][1], transform[row][2]).GetLength();
        if (length < 1e-10) length = 1e-10;
        for (int column = 0; column < 3; ++column)
            transform[row][column] /= length;
    }
}

} // namespace

void cleanTransform(GfCamera& camera)
{
    GfMatrix4d transform = camera.GetTransform();
    bool changed = mirroredAxesTurned(transform);
    if (hasUnusualAxes(transform)) {
        normalizeAxes(transform);
        changed = true;
    }
    if (changed) camera.SetTransform(transform);
}

void fitAperture(GfCamera& camera, float aspect, float distance)
{
    if (camera.GetProjection() == GfCamera::Orthographic) {
        camera.SetOrthographicFromAspectRatioAndSize(aspect, distance, GfCamera::FOVVertical);
        return;
    }
    camera.SetPerspectiveFromAspectRatioAndFieldOfView(
        aspect, camera.GetFieldOfView(GfCamera::FOVVertical), GfCamera::FOVVertical,
        static_cast<float>(GfCamera::DEFAULT_HORIZONTAL_APERTURE));
}

void rackFocus(GfCamera& camera, float focalLength, float orthographicFieldOfView)
{
    const float distanceBefore = camera.GetFocusDistance();
    const float fieldOfViewBefore = verticalFieldOfView(camera, orthographicFieldOfView);
    GfMatrix4d transform = camera.GetTransform();

    const float aperture = static_cast<float>(GfCamera::DEFAULT_VERTICAL_APERTURE);
    const double half = std::atan((aperture * GfCamera::APERTURE_UNIT) /
                                  ((2.0f * focalLength) * GfCamera::FOCAL_LENGTH_UNIT));
    const float fieldOfView = static_cast<float>(2.0 * half);
    camera.SetPerspectiveFromAspectRatioAndFieldOfView(camera.GetAspectRatio(),
                                                       static_cast<float>(fieldOfView * 57.29577951308232),
                                                       GfCamera::FOVVertical, camera.GetHorizontalAperture());

    const double halfBefore = static_cast<double>(fieldOfViewBefore) * 0.017453292519943295 * 0.5;
    const float halfHeight = static_cast<float>(std::tan(halfBefore) * distanceBefore);
    const float distance = static_cast<float>(halfHeight / std::tan(static_cast<double>(fieldOfView) * 0.5));

    const float shift = distanceBefore - distance;
    setCameraPosition(transform,
                      getCameraPosition(transform) - getCameraWDir(transform) * static_cast<double>(shift));
    camera.SetTransform(transform);
    camera.SetFocusDistance(distance);
}

} // namespace vesk::framework::usd_viewport
