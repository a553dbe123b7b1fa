#include "frame_lights.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;
constexpr float kFar = 1e30f;

// What a light's cone and focus leave of it in a direction away from it.
float shaped(const FrameLight& light, Vec3 away)
{
    if (light.coneCosine < -1.0f && light.focus <= 0.0f) return 1.0f;
    const float cosine = -dot(light.toLight, away);
    if (light.coneCosine >= -1.0f && cosine < light.coneCosine) return 0.0f;
    float share = 1.0f;
    if (light.coneCosine >= -1.0f && cosine < light.innerCosine) {
        const float x = (cosine - light.coneCosine) / std::max(light.innerCosine - light.coneCosine, 1e-6f);
        share = x * x * (3.0f - 2.0f * x);
    }
    return light.focus > 0.0f ? share * std::pow(std::max(cosine, 0.0f), light.focus) : share;
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
    const float r2 = light.isPoint ? 1.0f : light.radius * light.radius;
    result.irradiance = light.color * (light.isPoint ? r2 / (d * d) : std::min(r2 / (d * d), 1.0f));
    return result;
}

// From a place on a flat or round surface with a normal and an area.
LightSample fromSurface(Vec3 radiance, Vec3 place, Vec3 normal, float area, float offset)
{
    LightSample result;
    const float d2 = std::max(dot(place, place), 1e-12f);
    result.distance = std::max(std::sqrt(d2) * 0.999f - offset, 0.0f);
    result.direction = normalized(place);
    const float facing = std::max(-dot(normal, result.direction), 0.0f);
    result.irradiance = radiance * (area * facing / (d2 * kPi));
    return result;
}

LightSample sampleRectangle(const FrameLight& light, Vec3 point, Sample2 s)
{
    const Vec3 place =
        light.center + light.edgeX * (2.0f * s.x - 1.0f) + light.edgeY * (2.0f * s.y - 1.0f) - point;
    Vec3 radiance = light.color;
    if (light.texture && light.texture->isUsable()) {
        // Seen from where it shines, the picture's left is the light's +x.
        const Vec4 c = light.texture->sample(1.0f - s.x, s.y, TextureWrap::Clamp, TextureWrap::Clamp,
                                             TextureColorSpace::Auto);
        radiance = radiance * Vec3(c.v[0], c.v[1], c.v[2]);
    }
    return fromSurface(radiance, place, -light.toLight, 4.0f * length(cross(light.edgeX, light.edgeY)), 0.0f);
}

LightSample sampleDisk(const FrameLight& light, Vec3 point, Sample2 s)
{
    const float r = std::sqrt(s.x);
    const float phi = 2.0f * kPi * s.y;
    const Vec3 place =
        light.center + light.edgeX * (r * std::cos(phi)) + light.edgeY * (r * std::sin(phi)) - point;
    return fromSurface(light.color, place, -light.toLight, kPi * length(cross(light.edgeX, light.edgeY)),
                       0.0f);
}

// Only the half of a cylinder that faces the point is looked at.
LightSample sampleCylinder(const FrameLight& light, Vec3 point, Sample2 s)
{
    const Vec3 axis = normalized(light.edgeX);
    Vec3 to = point - light.center;
    to = normalized(to - axis * dot(to, axis), normalized(light.edgeY));
    const Vec3 side = cross(axis, to);
    const float phi = kPi * (s.y - 0.5f);
    const Vec3 normal = to * std::cos(phi) + side * std::sin(phi);
    const Vec3 place = light.center + light.edgeX * (2.0f * s.x - 1.0f) + normal * light.radius - point;
    return fromSurface(light.color, place, normal, kPi * light.radius * 2.0f * length(light.edgeX),
                       0.01f * light.radius);
}

LightSample sampleKind(const FrameLight& light, Vec3 point, Sample2 s)
{
    switch (light.kind) {
    case StageLightKind::Sphere:
        return sampleSphere(light, point, s);
    case StageLightKind::Rectangle:
        return sampleRectangle(light, point, s);
    case StageLightKind::Disk:
        return sampleDisk(light, point, s);
    case StageLightKind::Cylinder:
        return sampleCylinder(light, point, s);
    default:
        return sampleDistant(light, s);
    }
}

} // namespace

LightSample sampleLight(const FrameLight& light, Vec3 point, Sample2 s)
{
    LightSample sample = sampleKind(light, point, s);
    if (light.kind != StageLightKind::Distant) {
        sample.irradiance = sample.irradiance * shaped(light, -sample.direction);
    }
    return sample;
}

} // namespace vesk::renderers::embree
