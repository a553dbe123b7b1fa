#include "frame_lights.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;
constexpr float kFar = 1e30f;

Vec3 rgb(const GfVec4f& c) { return {c[0], c[1], c[2]}; }

void addRigLight(FrameLights& out, const GlfSimpleLight& light, const CameraRays& camera,
                 const GfVec3d& origin)
{
    if (light.IsDomeLight()) {
        out.dome += rgb(light.GetDiffuse());
        return;
    }
    out.ambient += rgb(light.GetAmbient());
    const GfVec4f p = light.GetPosition();
    const Vec3 v(p[0], p[1], p[2]);
    const bool cameraSpace = light.IsCameraSpaceLight();
    const Vec3 turned = cameraSpace ? camera.right() * v.x + camera.up() * v.y + camera.backward() * v.z : v;
    FrameLight added;
    added.shadows = light.HasShadow();
    if (p[3] == 0.0f) {
        added.toLight = normalized(turned);
        added.color = rgb(light.GetDiffuse());
        added.spread = 0.05f;
    } else {
        // Positional lights of this classic model do not fade: only their direction matters.
        added.toLight = normalized(cameraSpace ? turned + camera.at(0.0f, 0.0f).origin
                                               : Vec3(GfVec3d(v.x, v.y, v.z) - origin));
        added.color = rgb(light.GetDiffuse());
    }
    out.lights.push_back(added);
}

FrameLight makeDistant(const StageLight& light)
{
    FrameLight added;
    const float half = 0.5f * light.angleDegrees * kPi / 180.0f;
    const float solidAngle = 2.0f * kPi * (1.0f - std::cos(half));
    added.toLight = normalized(Mat3::of(light.localToWorld).apply(Vec3(0.0f, 0.0f, 1.0f)));
    added.spread = std::tan(std::min(half, 1.5f));
    added.color = light.color * ((light.normalize ? 1.0f : std::max(solidAngle, 1e-9f)) / kPi);
    return added;
}

FrameLight makeSphere(const StageLight& light, const Mat3& toWorld, Vec3 center)
{
    FrameLight added;
    added.kind = FrameLight::Kind::Sphere;
    added.center = center;
    added.radius = light.radius * length(toWorld.row0);
    const float area = 4.0f * kPi * added.radius * added.radius;
    added.color = light.normalize && area > 0.0f ? light.color * (1.0f / area) : light.color;
    return added;
}

FrameLight makeRectangle(const StageLight& light, const Mat3& toWorld, Vec3 center)
{
    FrameLight added;
    added.kind = FrameLight::Kind::Rectangle;
    added.center = center;
    added.edgeX = toWorld.row0 * (0.5f * light.width);
    added.edgeY = toWorld.row1 * (0.5f * light.height);
    const float area = 4.0f * length(cross(added.edgeX, added.edgeY));
    added.color = light.normalize && area > 0.0f ? light.color * (1.0f / area) : light.color;
    return added;
}

void addStageLight(FrameLights& out, const StageLight& light, const GfVec3d& origin)
{
    if (light.kind == StageLightKind::Dome) {
        out.dome += light.color;
        return;
    }
    const Mat3 toWorld = Mat3::of(light.localToWorld);
    const Vec3 center(light.localToWorld.ExtractTranslation() - origin);
    FrameLight added = light.kind == StageLightKind::Distant ? makeDistant(light)
                       : light.kind == StageLightKind::Point ? makeSphere(light, toWorld, center)
                                                             : makeRectangle(light, toWorld, center);
    added.shadows = light.castsShadows;
    if (isFinite(added.color) && isFinite(added.center)) out.lights.push_back(added);
}

LightSample sampleDistant(const FrameLight& light, Sample2 s)
{
    LightSample result;
    Vec3 t;
    Vec3 b;
    basisAround(light.toLight, t, b);
    const float r = light.spread * std::sqrt(s.x);
    const float phi = 2.0f * kPi * s.y;
    result.direction = normalized(light.toLight + t * (r * std::cos(phi)) + b * (r * std::sin(phi)));
    result.distance = kFar;
    result.irradiance = light.color;
    return result;
}

// A sphere looks like a disk that faces the point.
LightSample sampleSphere(const FrameLight& light, Vec3 point, Sample2 s)
{
    LightSample result;
    const Vec3 to = light.center - point;
    const float d = std::max(length(to), 1e-12f);
    const Vec3 axis = to * (1.0f / d);
    Vec3 t;
    Vec3 b;
    basisAround(axis, t, b);
    const float r = light.radius * std::sqrt(s.x);
    const float phi = 2.0f * kPi * s.y;
    const Vec3 place = to + t * (r * std::cos(phi)) + b * (r * std::sin(phi));
    result.direction = normalized(place, axis);
    result.distance = std::max(length(place) - light.radius * 1.01f, 0.0f);
    result.irradiance = light.color * std::min(light.radius * light.radius / (d * d), 1.0f);
    return result;
}

LightSample sampleRectangle(const FrameLight& light, Vec3 point, Sample2 s)
{
    LightSample result;
    const Vec3 place =
        light.center + light.edgeX * (2.0f * s.x - 1.0f) + light.edgeY * (2.0f * s.y - 1.0f) - point;
    const float d2 = std::max(dot(place, place), 1e-12f);
    result.distance = std::sqrt(d2) * 0.999f;
    result.direction = normalized(place);
    // It shines along its own -z.
    const Vec3 across = cross(light.edgeX, light.edgeY);
    const float facing = std::max(dot(normalized(across), result.direction), 0.0f);
    result.irradiance = light.color * (4.0f * length(across) * facing / (d2 * kPi));
    return result;
}

} // namespace

FrameLights FrameLights::gather(const vesk::usd::hydra_renderer::LightingInfo& info,
                                const SceneSnapshot& scene, const CameraRays& camera,
                                const GfVec3d& sceneOrigin)
{
    FrameLights out;
    if (scene.zUp) out.up = Vec3(0.0f, 0.0f, 1.0f);
    out.ambient = rgb(info.sceneAmbient);
    for (const GlfSimpleLight& light : info.lights) {
        addRigLight(out, light, camera, sceneOrigin);
    }
    if (!info.sceneLightsEnabled) return out;
    for (const StageLight& light : scene.lights) {
        addStageLight(out, light, sceneOrigin);
    }
    return out;
}

LightSample sampleLight(const FrameLight& light, Vec3 point, Sample2 s)
{
    switch (light.kind) {
    case FrameLight::Kind::Sphere:
        return sampleSphere(light, point, s);
    case FrameLight::Kind::Rectangle:
        return sampleRectangle(light, point, s);
    default:
        return sampleDistant(light, s);
    }
}

} // namespace vesk::renderers::embree
