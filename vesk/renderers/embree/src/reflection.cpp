#include "reflection.h"

namespace vesk::renderers::embree {
namespace {

constexpr float kPi = 3.14159265f;
constexpr float kLeastAlpha = 0.002f;

float alphaOf(float roughness) { return std::max(roughness * roughness, kLeastAlpha); }

float power5(float v)
{
    const float v2 = v * v;
    return v2 * v2 * v;
}

Vec3 fresnel(Vec3 straight, float cosine)
{
    return straight + (Vec3(1.0f) - straight) * power5(1.0f - std::clamp(cosine, 0.0f, 1.0f));
}

// Smith's masking of one direction.
float masking(float cosine, float alpha)
{
    const float c2 = cosine * cosine;
    return 2.0f / (1.0f + std::sqrt(1.0f + alpha * alpha * (1.0f - c2) / std::max(c2, 1e-8f)));
}

// D G / (4 cos cos), without the Fresnel term.
float facets(float normalHalf, float normalView, float normalLight, float alpha)
{
    const float a2 = alpha * alpha;
    const float d = normalHalf * normalHalf * (a2 - 1.0f) + 1.0f;
    const float density = a2 / (kPi * d * d);
    return density * masking(normalView, alpha) * masking(normalLight, alpha) /
           std::max(4.0f * normalView * normalLight, 1e-6f);
}

float largest(Vec3 v) { return std::max(v.x, std::max(v.y, v.z)); }

} // namespace

Vec3 Reflection::between(Vec3 normal, Vec3 toViewer, Vec3 toLight, float diffuseScale,
                         float specularScale) const
{
    const float normalView = std::max(dot(normal, toViewer), 1e-4f);
    const float normalLight = std::max(dot(normal, toLight), 1e-4f);
    const Vec3 half = normalized(toViewer + toLight, normal);
    const float normalHalf = std::clamp(dot(normal, half), 0.0f, 1.0f);
    const Vec3 f = fresnel(specular, dot(toViewer, half));
    Vec3 sum = diffuse * (Vec3(1.0f) - f) * diffuseScale;
    sum += f * (facets(normalHalf, normalView, normalLight, alphaOf(roughness)) * kPi * specularScale);
    if (coat > 0.0f) {
        const float fc = coat * fresnel(Vec3(0.04f), dot(toViewer, half)).x;
        sum = sum * (1.0f - fc) +
              Vec3(fc * facets(normalHalf, normalView, normalLight, alphaOf(coatRoughness)) * kPi *
                   specularScale);
    }
    return sum;
}

bool Reflection::mirrors() const
{
    return reflective && (largest(specular) > 0.2f || roughness < 0.25f || coat > 0.0f);
}

bool Reflection::sampleMirror(Vec3 normal, Vec3 toViewer, Sample2 s, Vec3& direction, Vec3& share) const
{
    const bool fromCoat = coat > 0.0f && largest(specular) < 0.2f;
    const float alpha = alphaOf(fromCoat ? coatRoughness : roughness);
    Vec3 t;
    Vec3 b;
    basisAround(normal, t, b);
    // Facets that the viewer sees (Heitz 2018): a hemisphere seen from the stretched direction.
    const Vec3 v =
        normalized(Vec3(alpha * dot(toViewer, t), alpha * dot(toViewer, b), dot(toViewer, normal)));
    Vec3 t1 = v.z < 0.9999f ? normalized(cross(Vec3(0, 0, 1), v)) : Vec3(1, 0, 0);
    const Vec3 t2 = cross(v, t1);
    const float r = std::sqrt(s.x);
    const float phi = 2.0f * kPi * s.y;
    const float p1 = r * std::cos(phi);
    const float lerpTo = 0.5f * (1.0f + v.z);
    const float p2 = (1.0f - lerpTo) * std::sqrt(std::max(0.0f, 1.0f - p1 * p1)) + lerpTo * r * std::sin(phi);
    const Vec3 h = t1 * p1 + t2 * p2 + v * std::sqrt(std::max(0.0f, 1.0f - p1 * p1 - p2 * p2));
    const Vec3 local = normalized(Vec3(alpha * h.x, alpha * h.y, std::max(h.z, 0.0f)));
    const Vec3 half = t * local.x + b * local.y + normal * local.z;
    direction = half * (2.0f * dot(toViewer, half)) - toViewer;
    const float cosine = dot(direction, normal);
    if (cosine <= 0.0f) return false;
    const Vec3 f =
        fromCoat ? fresnel(Vec3(0.04f), dot(toViewer, half)) * coat : fresnel(specular, dot(toViewer, half));
    share = f * masking(cosine, alpha);
    return true;
}

} // namespace vesk::renderers::embree
