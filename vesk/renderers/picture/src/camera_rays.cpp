#include <vesk/renderers/picture/camera_rays.h>

#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/range2d.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::picture {
namespace {

bool isFinite(const GfMatrix4d& m)
{
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            if (!std::isfinite(m[i][j])) return false;
        }
    }
    return true;
}

bool isUsableWindow(const GfRange2d& window)
{
    const GfVec2d size = window.GetSize();
    return std::isfinite(size[0]) && std::isfinite(size[1]) && std::isfinite(window.GetMin()[0]) &&
           std::isfinite(window.GetMin()[1]) && size[0] > 0.0 && size[1] > 0.0;
}

} // namespace

std::optional<CameraRays> CameraRays::make(const GfCamera& camera, CameraUtilConformWindowPolicy policy,
                                           const GfVec2i& size, const GfVec3d& sceneOrigin, float sceneRadius)
{
    const GfMatrix4d transform = camera.GetTransform();
    const GfRange1f range = camera.GetClippingRange();
    CameraRays rays;
    rays.m_perspective = camera.GetProjection() == GfCamera::Perspective;
    if (!isFinite(transform) || !std::isfinite(range.GetMin()) || !(range.GetMin() < range.GetMax()))
        return {};
    if (rays.m_perspective && !(camera.GetFocalLength() > 0.0f)) return {};

    const GfFrustum frustum = camera.GetFrustum();
    const GfRange2d window = CameraUtilConformedWindow(
        frustum.GetWindow(), policy, static_cast<double>(size[0]) / static_cast<double>(size[1]));
    if (!isUsableWindow(window)) return {};

    const GfRotation& rotation = frustum.GetRotation();
    rays.m_right = normalized(Vec3(rotation.TransformDir(GfVec3d::XAxis())));
    rays.m_up = normalized(Vec3(rotation.TransformDir(GfVec3d::YAxis())));
    rays.m_backward = normalized(Vec3(rotation.TransformDir(GfVec3d::ZAxis())));
    rays.m_position = Vec3(frustum.GetPosition() - sceneOrigin);
    if (!picture::isFinite(rays.m_position)) return {};
    rays.m_near = rays.m_perspective ? std::max(range.GetMin(), 0.0f) : range.GetMin();
    rays.m_far = range.GetMax();
    // Orthographic rays begin just before the scene: far behind it their distances would lose their digits.
    const float sceneBegin = dot(rays.m_position, rays.m_backward) - 1.01f * sceneRadius;
    rays.m_start = std::max(rays.m_near, std::min(sceneBegin, rays.m_far));
    rays.m_left = window.GetMin()[0];
    rays.m_top = window.GetMax()[1];
    rays.m_stepX = window.GetSize()[0] / size[0];
    rays.m_stepY = window.GetSize()[1] / size[1];
    rays.m_pixelWidth = static_cast<float>(std::max(rays.m_stepX, rays.m_stepY));
    rays.m_planes = camera.GetClippingPlanes();
    return rays;
}

ViewRay CameraRays::at(float x, float y) const
{
    const auto wx = static_cast<float>(m_left + m_stepX * x);
    const auto wy = static_cast<float>(m_top - m_stepY * y);
    ViewRay ray;
    if (m_perspective) {
        const Vec3 through = m_right * wx + m_up * wy - m_backward;
        const float l = length(through);
        ray.origin = m_position;
        ray.direction = through * (1.0f / l);
        ray.depthScale = 1.0f / l;
        ray.tNear = m_near * l;
        ray.tFar = m_far * l;
        ray.tClip = ray.tNear;
    } else {
        ray.origin = m_position + m_right * wx + m_up * wy - m_backward * m_start;
        ray.direction = -m_backward;
        ray.tNear = 0.0f;
        ray.tFar = m_far - m_start;
        ray.tClip = m_near - m_start;
        ray.depthOffset = m_start;
    }
    if (!m_planes.empty() && !_clip(ray.origin, ray.direction, ray.tNear, ray.tFar)) ray.tFar = ray.tNear;
    return ray;
}

bool CameraRays::_clip(Vec3 origin, Vec3 direction, float& tNear, float& tFar) const
{
    const Vec3 offset = origin - m_position;
    const Vec3 o(dot(offset, m_right), dot(offset, m_up), dot(offset, m_backward));
    const Vec3 d(dot(direction, m_right), dot(direction, m_up), dot(direction, m_backward));
    for (const GfVec4f& plane : m_planes) {
        const Vec3 n(plane[0], plane[1], plane[2]);
        const float distance = dot(n, o) + plane[3];
        const float slope = dot(n, d);
        if (!std::isfinite(distance) || !std::isfinite(slope)) continue;
        if (slope > 0.0f) {
            tNear = std::max(tNear, -distance / slope);
        } else if (slope < 0.0f) {
            tFar = std::min(tFar, -distance / slope);
        } else if (distance < 0.0f) {
            return false;
        }
    }
    return tNear < tFar;
}

float CameraRays::windowDepth(float viewDistance) const
{
    const double n = m_near;
    const double f = m_far;
    const double d = viewDistance;
    if (!m_perspective) return static_cast<float>((d - n) / (f - n));
    return d > 0.0 ? static_cast<float>((f / (f - n)) * (1.0 - n / d)) : 0.0f;
}

} // namespace vesk::renderers::picture
