#pragma once

#include <vesk/renderers/picture/export.h>
#include <vesk/renderers/picture/vec3.h>

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>

#include <optional>
#include <vector>

namespace vesk::renderers::picture {

/// One view ray. The distance of a point at `t` from the camera along the view axis is
/// `depthOffset + t * depthScale`.
struct ViewRay
{
    Vec3 origin;
    Vec3 direction;     ///< unit length
    float tNear = 0.0f; ///< where the scene may begin, not negative
    float tFar = 0.0f;
    float tClip = 0.0f; ///< where the near plane lies; may be negative where the ray begins behind it
    float depthOffset = 0.0f;
    float depthScale = 1.0f;
    float travelled = 0.0f; ///< how long the way to the origin was already: of mirrored rays

    float viewDistance(float t) const { return depthOffset + t * depthScale; }
};

/// Turns picture positions into rays: camera, window fit and clipping in one.
class VESK_RENDERERS_PICTURE_EXPORT CameraRays
{
public:
    /// \param camera in world space
    /// \param policy how its window is fitted into the picture
    /// \param size the picture in physical pixels, both at least 1
    /// \param sceneOrigin the world point that is the origin of the rays' space
    /// \param sceneRadius nothing lies farther than this from the origin; orthographic rays begin there
    /// Returns nothing for a camera that has no usable view (values that are not finite, no window, near not
    /// below far).
    static std::optional<CameraRays> make(const PXR_NS::GfCamera& camera,
                                          PXR_NS::CameraUtilConformWindowPolicy policy,
                                          const PXR_NS::GfVec2i& size, const PXR_NS::GfVec3d& sceneOrigin,
                                          float sceneRadius);

    /// The ray through a position of the picture in physical pixels, (0, 0) at the top left corner.
    ViewRay at(float x, float y) const;

    /// The width of a pixel at a ray distance of 1 (perspective) or anywhere (orthographic), in stage units.
    float pixelWidth() const { return m_pixelWidth; }
    bool isPerspective() const { return m_perspective; }

    Vec3 right() const { return m_right; }
    Vec3 up() const { return m_up; }
    Vec3 backward() const { return m_backward; }

    /// The depth of a point in the window from 0 (near) to 1 (far), as a depth buffer holds it.
    float windowDepth(float viewDistance) const;

private:
    bool _clip(Vec3 origin, Vec3 direction, float& tNear, float& tFar) const;

    bool m_perspective = true;
    Vec3 m_position;
    Vec3 m_right;
    Vec3 m_up;
    Vec3 m_backward;
    double m_left = 0.0;
    double m_top = 0.0;
    double m_stepX = 0.0;
    double m_stepY = 0.0;
    float m_near = 0.0f;
    float m_far = 0.0f;
    float m_start = 0.0f; ///< view distance at which orthographic rays begin
    float m_pixelWidth = 0.0f;
    std::vector<PXR_NS::GfVec4f> m_planes; ///< camera space; a point is seen where each is not negative
};

} // namespace vesk::renderers::picture
