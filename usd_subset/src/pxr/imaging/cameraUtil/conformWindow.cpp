#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// a / b, or what stands in for it where b is 0.
double Divide(double a, double b, double otherwise) { return b != 0.0 ? a / b : otherwise; }

// Whether the policy keeps the width and changes the height of a window of this size. Fit enlarges: a window
// that is wider than the target gets higher. Crop does the opposite.
bool KeepsWidth(const GfVec2d& size, CameraUtilConformWindowPolicy policy, double targetAspect)
{
    if (policy == CameraUtilMatchVertically || policy == CameraUtilMatchHorizontally) {
        return policy == CameraUtilMatchHorizontally;
    }
    const bool isWider = Divide(size[0], size[1], 1.0) > targetAspect;
    return (policy == CameraUtilFit) == isWider;
}

} // namespace

GfVec2d CameraUtilConformedWindow(const GfVec2d& window, CameraUtilConformWindowPolicy policy,
                                  double targetAspect)
{
    if (policy == CameraUtilDontConform) {
        return window;
    }
    if (KeepsWidth(window, policy, targetAspect)) {
        return GfVec2d(window[0], Divide(window[0], targetAspect, window[0]));
    }
    return GfVec2d(window[1] * targetAspect, window[1]);
}

GfRange2d CameraUtilConformedWindow(const GfRange2d& window, CameraUtilConformWindowPolicy policy,
                                    double targetAspect)
{
    if (policy == CameraUtilDontConform) {
        return window;
    }
    const GfVec2d size = window.GetSize();
    const GfVec2d halfSize = CameraUtilConformedWindow(size, policy, targetAspect) / 2.0;
    const GfVec2d center = (window.GetMin() + window.GetMax()) / 2.0;
    GfVec2d min = window.GetMin();
    GfVec2d max = window.GetMax();
    const int changed = KeepsWidth(size, policy, targetAspect) ? 1 : 0;
    min[changed] = center[changed] - halfSize[changed];
    max[changed] = center[changed] + halfSize[changed];
    return GfRange2d(min, max);
}

GfVec4d CameraUtilConformedWindow(const GfVec4d& window, CameraUtilConformWindowPolicy policy,
                                  double targetAspect)
{
    const GfRange2d conformed = CameraUtilConformedWindow(
        GfRange2d(GfVec2d(window[0], window[2]), GfVec2d(window[1], window[3])), policy, targetAspect);
    return GfVec4d(conformed.GetMin()[0], conformed.GetMax()[0], conformed.GetMin()[1],
                   conformed.GetMax()[1]);
}

GfMatrix4d CameraUtilConformedWindow(const GfMatrix4d& projectionMatrix, CameraUtilConformWindowPolicy policy,
                                     double targetAspect)
{
    if (policy == CameraUtilDontConform) {
        return projectionMatrix;
    }
    // Points are multiplied by the diagonal, hence the window's size is its inverse: width / height is this
    // ratio.
    const GfVec2d size(std::fabs(projectionMatrix[1][1]), std::fabs(projectionMatrix[0][0]));
    const bool keepsWidth = KeepsWidth(size, policy, targetAspect);
    const int column = keepsWidth ? 1 : 0;
    const double magnitude = keepsWidth ? size[1] * targetAspect : Divide(size[0], targetAspect, size[0]);
    const double original = projectionMatrix[column][column];

    GfMatrix4d result(projectionMatrix);
    result[column][column] = original < 0.0 ? -magnitude : magnitude;
    // The offset of a window that is off centre: row 2 for perspective, row 3 for orthographic projections.
    const double scale = Divide(result[column][column], original, result[column][column]);
    result[2][column] *= scale;
    result[3][column] *= scale;
    return result;
}

void CameraUtilConformWindow(GfCamera* camera, CameraUtilConformWindowPolicy policy, double targetAspect)
{
    if (policy == CameraUtilDontConform) {
        return;
    }
    const GfVec2d conformed = CameraUtilConformedWindow(
        GfVec2d(camera->GetHorizontalAperture(), camera->GetVerticalAperture()), policy, targetAspect);
    camera->SetHorizontalAperture(static_cast<float>(conformed[0]));
    camera->SetVerticalAperture(static_cast<float>(conformed[1]));
}

void CameraUtilConformWindow(GfFrustum* frustum, CameraUtilConformWindowPolicy policy, double targetAspect)
{
    if (policy != CameraUtilDontConform) {
        frustum->SetWindow(CameraUtilConformedWindow(frustum->GetWindow(), policy, targetAspect));
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
