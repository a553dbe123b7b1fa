#pragma once

#include "dome.h"
#include "drawing.h"
#include "sampling.h"
#include "scene_snapshot.h"

#include <vesk/usd/hydra_renderer/lighting.h>

#include <vector>

namespace vesk::renderers::embree {

/// One light as the shading sees it, in the ray tracer's space.
struct FrameLight
{
    StageLightKind kind = StageLightKind::Distant;
    Vec3 color;   ///< distant: the light that falls on a facing surface, divided by pi; others: radiance
    Vec3 toLight; ///< of distant lights, unit length; of others the direction against their own -z
    float spread = 0.0f; ///< of distant lights: tangent of half their angle
    Vec3 center;
    float radius = 0.0f;
    Vec3 edgeX; ///< half the rectangle's sides; of disks their radii; of cylinders half their axis and a
                ///< radius
    Vec3 edgeY;
    Vec3 edgeZ; ///< of cylinders another radius
    float diffuse = 1.0f;
    float specular = 1.0f;
    float coneCosine = -2.0f;  ///< outside it the light is dark; below -1: no cone
    float innerCosine = -2.0f; ///< inside it the light is whole
    float focus = 0.0f;
    bool isPoint = false; ///< `color` is the light that falls on a facing surface at distance 1
    bool shadows = false;
    std::shared_ptr<const Texture> texture;
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
    std::vector<Dome> domes; ///< with a picture
    Vec3 dome{0.0f};         ///< radiance from all around: domes of one colour
    Vec3 ambient{0.0f};      ///< light without shape and shadow
    Vec3 up{0.0f, 1.0f, 0.0f};
    bool gradedDome = false; ///< whether the ground is darker than the sky

    /// Gathers the default rig and, where they are enabled, the stage's lights.
    static FrameLights gather(const vesk::usd::hydra_renderer::LightingInfo& info, const SceneSnapshot& scene,
                              const CameraRays& camera, const PXR_NS::GfVec3d& sceneOrigin);

    /// What comes from a direction of the surroundings.
    Vec3 surroundings(Vec3 direction) const;
};

/// Picks a place on a light and returns what comes from there.
LightSample sampleLight(const FrameLight& light, Vec3 point, Sample2 s);

} // namespace vesk::renderers::embree
