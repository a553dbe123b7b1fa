#pragma once

#include <vesk/renderers/picture/camera_rays.h>
#include <vesk/renderers/picture/export.h>
#include <vesk/renderers/picture/frame_settings.h>

namespace vesk::renderers::picture {

/// The ground grid: lines on the plane through the world's origin, with a spacing that fits the scene.
class VESK_RENDERERS_PICTURE_EXPORT Grid
{
public:
    /// \param zUp whether the ground lies across z, else across y
    /// \param sceneOrigin the world point that is the origin of the camera's rays
    /// \param sceneRadius how far the scene reaches from there, in stage units
    Grid(const FrameSettings& settings, bool zUp, const CameraRays& camera,
         const PXR_NS::GfVec3d& sceneOrigin, float sceneRadius);

    /// What a view ray sees of the grid.
    struct Crossing
    {
        float t = 0.0f;     ///< where the ray crosses the ground
        float alpha = 0.0f; ///< how much of the pixel the lines cover, 0 where none
        Vec3 color;         ///< working colour
    };

    Crossing cross(const ViewRay& ray) const;

private:
    float _coverage(double coordinate, double spacing, float pixel) const;

    bool m_enabled = false;
    bool m_zUp = false;
    bool m_perspective = true;
    PXR_NS::GfVec3d m_origin{0.0, 0.0, 0.0};
    double m_spacing = 1.0;
    float m_reach = 1.0f;
    float m_thickness = 1.0f;
    float m_pixelWidth = 0.0f;
    Vec3 m_above;
    Vec3 m_below;
    float m_aboveAlpha = 1.0f;
    float m_belowAlpha = 1.0f;
};

/// The spacing of the fine lines for a scene of a radius: a power of ten, about a tenth of the radius.
VESK_RENDERERS_PICTURE_EXPORT double gridSpacing(float sceneRadius);

} // namespace vesk::renderers::picture
