#pragma once

#include "camera_rays.h"
#include "sampling.h"
#include "scene_snapshot.h"

#include <vesk/usd/hydra_renderer/lighting.h>

#include <vector>

namespace vesk::renderers::embree {

/// One light as the shading sees it, in the ray tracer's space.
struct FrameLight
{
    enum class Kind : std::uint8_t
    {
        Distant,
        Sphere,
        Rectangle
    };
    Kind kind = Kind::Distant;
    Vec3 color;          ///< distant: the light that falls on a facing surface; others: radiance
    Vec3 toLight;        ///< of distant lights, unit length
    float spread = 0.0f; ///< of distant lights: tangent of half their angle
    Vec3 center;
    float radius = 0.0f;
    Vec3 edgeX; ///< half the rectangle's sides
    Vec3 edgeY;
    bool shadows = false;
};

/// What reaches a point from one light.
struct LightSample
{
    Vec3 direction; ///< unit length, towards the light
    float distance = 0.0f;
    Vec3 irradiance; ///< on a surface that faces `direction`, divided by pi
};

/// The lights of one frame.
struct FrameLights
{
    std::vector<FrameLight> lights;
    Vec3 dome{0.0f};    ///< radiance from all around
    Vec3 ambient{0.0f}; ///< light without shape and shadow
    Vec3 up{0.0f, 1.0f, 0.0f};

    /// Gathers the default rig and, where they are enabled, the stage's lights.
    static FrameLights gather(const vesk::usd::hydra_renderer::LightingInfo& info, const SceneSnapshot& scene,
                              const CameraRays& camera, const PXR_NS::GfVec3d& sceneOrigin);
};

/// Picks a place on a light and returns what comes from there.
LightSample sampleLight(const FrameLight& light, Vec3 point, Sample2 s);

} // namespace vesk::renderers::embree
