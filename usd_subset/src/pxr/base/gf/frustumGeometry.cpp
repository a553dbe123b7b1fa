#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/tf/diagnostic.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

GfVec3d GfFrustum::ComputeViewDirection() const { return _rotation.TransformDir(-GfVec3d::ZAxis()); }

GfVec3d GfFrustum::ComputeUpVector() const { return _rotation.TransformDir(GfVec3d::YAxis()); }

void GfFrustum::ComputeViewFrame(GfVec3d* side, GfVec3d* up, GfVec3d* view) const
{
    *up = ComputeUpVector();
    *view = ComputeViewDirection();
    *side = GfCross(*view, *up);
}

GfVec3d GfFrustum::ComputeLookAtPoint() const { return _position + _viewDistance * ComputeViewDirection(); }

GfMatrix4d GfFrustum::ComputeViewMatrix() const
{
    GfMatrix4d m;
    return m.SetLookAt(_position, _rotation);
}

GfMatrix4d GfFrustum::ComputeViewInverse() const { return ComputeViewMatrix().GetInverse(); }

GfMatrix4d GfFrustum::ComputeProjectionMatrix() const
{
    const double l = _window.GetMin()[0], r = _window.GetMax()[0];
    const double b = _window.GetMin()[1], t = _window.GetMax()[1];
    const double n = _nearFar.GetMin(), f = _nearFar.GetMax();
    const double rl = r - l;
    const double tb = t - b;
    const double fn = f - n;
    GfMatrix4d m(1.0);
    m[0][0] = 2.0 / rl;
    m[1][1] = 2.0 / tb;
    if (_projectionType == Orthographic) {
        m[2][2] = -2.0 / fn;
        m.SetRow3(3, GfVec3d(-(r + l) / rl, -(t + b) / tb, -(f + n) / fn));
    } else {
        m.SetRow(2, GfVec4d((r + l) / rl, (t + b) / tb, -(f + n) / fn, -1.0));
        m.SetRow(3, GfVec4d(0.0, 0.0, -2.0 * n * f / fn, 0.0));
    }
    return m;
}

double GfFrustum::ComputeAspectRatio() const
{
    const GfVec2d size = _window.GetSize();
    return size[1] != 0.0 ? std::fabs(size[0] / size[1]) : 0.0;
}

std::array<GfVec3d, 4> GfFrustum::_EyeSpaceCorners(double distance) const
{
    const double scale = _projectionType == Perspective ? distance : 1.0;
    const GfVec2d min = _window.GetMin() * scale;
    const GfVec2d max = _window.GetMax() * scale;
    return {GfVec3d(min[0], min[1], -distance), GfVec3d(max[0], min[1], -distance),
            GfVec3d(min[0], max[1], -distance), GfVec3d(max[0], max[1], -distance)};
}

std::vector<GfVec3d> GfFrustum::ComputeCornersAtDistance(double d) const
{
    const GfMatrix4d toWorld = ComputeViewInverse();
    std::vector<GfVec3d> corners;
    corners.reserve(4);
    for (const GfVec3d& corner : _EyeSpaceCorners(d)) {
        corners.push_back(toWorld.Transform(corner));
    }
    return corners;
}

std::vector<GfVec3d> GfFrustum::ComputeCorners() const
{
    std::vector<GfVec3d> corners = ComputeCornersAtDistance(_nearFar.GetMin());
    for (const GfVec3d& corner : ComputeCornersAtDistance(_nearFar.GetMax())) {
        corners.push_back(corner);
    }
    return corners;
}

namespace {

// The point of the window at a normalized position.
GfVec2d WindowPoint(const GfVec2d& windowPos, const GfRange2d& window)
{
    return window.GetMin() + GfCompMult(.5 * (GfVec2d(1.0) + windowPos), window.GetSize());
}

} // namespace

GfFrustum GfFrustum::ComputeNarrowedFrustum(const GfVec2d& windowPos, const GfVec2d& size) const
{
    return _ComputeNarrowedFrustumSub(WindowPoint(windowPos, _window), size);
}

GfFrustum GfFrustum::ComputeNarrowedFrustum(const GfVec3d& worldPoint, const GfVec2d& size) const
{
    const GfVec3d eyePoint = ComputeViewMatrix().Transform(worldPoint);
    if (eyePoint[2] >= 0) {
        TF_WARN("Given worldPoint is behind or at the eye");
        return *this;
    }
    GfVec2d windowPoint(eyePoint[0], eyePoint[1]);
    if (_projectionType == Perspective) {
        windowPoint /= -eyePoint[2];
    }
    return _ComputeNarrowedFrustumSub(windowPoint, size);
}

GfFrustum GfFrustum::_ComputeNarrowedFrustumSub(const GfVec2d& windowPoint, const GfVec2d& size) const
{
    const GfVec2d halfSize = .5 * GfCompMult(size, _window.GetSize());
    GfFrustum narrowed = *this;
    narrowed.SetWindow(
        GfRange2d::GetIntersection(GfRange2d(windowPoint - halfSize, windowPoint + halfSize), _window));
    return narrowed;
}

GfRay GfFrustum::_EyeSpaceRay(const GfVec2d& windowPos) const
{
    const GfVec2d point = WindowPoint(windowPos, _window);
    if (_projectionType == Perspective) {
        return GfRay(GfVec3d(0), GfVec3d(point[0], point[1], -1.0).GetNormalized());
    }
    return GfRay(GfVec3d(point[0], point[1], -_nearFar.GetMin()), -GfVec3d::ZAxis());
}

GfRay GfFrustum::_EyeSpaceRay(const GfVec3d& worldSpacePos) const
{
    const GfVec3d point = ComputeViewMatrix().Transform(worldSpacePos);
    if (_projectionType == Perspective) {
        return GfRay(GfVec3d(0), point.GetNormalized());
    }
    return GfRay(GfVec3d(point[0], point[1], 0.0), -GfVec3d::ZAxis());
}

GfRay GfFrustum::_FromNearPlane(const GfRay& eyeSpaceRay) const
{
    return GfRay(eyeSpaceRay.GetPoint(_nearFar.GetMin()), eyeSpaceRay.GetDirection());
}

GfRay GfFrustum::ComputeRay(const GfVec2d& windowPos) const
{
    return _EyeSpaceRay(windowPos).Transform(ComputeViewInverse());
}

GfRay GfFrustum::ComputeRay(const GfVec3d& worldSpacePos) const
{
    return _EyeSpaceRay(worldSpacePos).Transform(ComputeViewInverse());
}

GfRay GfFrustum::ComputePickRay(const GfVec2d& windowPos) const
{
    return _FromNearPlane(_EyeSpaceRay(windowPos)).Transform(ComputeViewInverse());
}

GfRay GfFrustum::ComputePickRay(const GfVec3d& worldSpacePos) const
{
    return _FromNearPlane(_EyeSpaceRay(worldSpacePos)).Transform(ComputeViewInverse());
}

PXR_NAMESPACE_CLOSE_SCOPE
