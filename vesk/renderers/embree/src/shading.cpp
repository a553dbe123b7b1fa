#include "shading.h"

#include "color.h"
#include "tile_tracer.h"

namespace vesk::renderers::embree {
namespace {

constexpr float kBounce = 0.3f;    // of the dome's light still arrives where something near blocks it
constexpr float kDomeReach = 0.5f; // in radii of the scene: things farther away do not darken
constexpr float kGroundBrightness = 0.55f;

// A broad highlight whose size follows the roughness; energy does not matter for a working view.
Vec3 highlight(const Material& material, Vec3 baseColor, Vec3 normal, Vec3 toViewer, Vec3 toLight)
{
    const float rough = std::clamp(material.roughness, 0.05f, 1.0f);
    const float exponent = std::min(2.0f / (rough * rough * rough * rough) - 1.0f, 2000.0f);
    const Vec3 half = normalized(toViewer + toLight, normal);
    const float lobe = std::pow(std::max(dot(normal, half), 0.0f), exponent) * (exponent + 8.0f) * 0.03f;
    const Vec3 tint = lerp(Vec3(material.specular), baseColor, std::clamp(material.metallic, 0.0f, 1.0f));
    return tint * std::min(lobe, 8.0f);
}

Vec3 reflected(const ShadedPoint& p, const LightSample& light)
{
    const float cosine = dot(p.surface.normal, light.direction);
    if (cosine <= 0.0f) return {};
    const Material& material = *p.surface.material;
    const Vec3 diffuse = p.surface.color * (1.0f - std::clamp(material.metallic, 0.0f, 1.0f) * 0.7f);
    const Vec3 toViewer = -p.viewDirection;
    return (diffuse + highlight(material, p.surface.color, p.surface.normal, toViewer, light.direction)) *
           light.irradiance * cosine;
}

bool isDark(Vec3 c) { return c.x <= 0.0f && c.y <= 0.0f && c.z <= 0.0f; }

RTCRay makeRay(Vec3 from, Vec3 direction, float distance)
{
    RTCRay r{};
    r.org_x = from.x;
    r.org_y = from.y;
    r.org_z = from.z;
    r.dir_x = direction.x;
    r.dir_y = direction.y;
    r.dir_z = direction.z;
    r.tfar = distance;
    r.mask = 0xffffffffu;
    return r;
}

} // namespace

Shader::Shader(const FrameView& view, int sample) : m_view(view), m_sample(sample) {}

float Shader::offsetAt(float t) const { return 2e-5f * (m_view.scene->radius() + std::abs(t)); }

ShadedPoint Shader::prepare(const SurfaceHit& hit, const ViewRay& ray, std::uint32_t seed) const
{
    ShadedPoint point;
    point.hit = hit;
    point.seed = seed;
    point.viewDirection = ray.direction;
    const DrawMode mode = m_view.settings.drawMode;
    point.surface = surfaceAt(*m_view.scene, hit, ray.origin, ray.direction, m_view.defaultMaterial,
                              mode == DrawMode::ShadedFlat);
    point.alpha = point.surface.opacity;
    if (mode == DrawMode::Wireframe || mode == DrawMode::Points) point.alpha = _lineAlpha(point, ray);
    return point;
}

// How much of a pixel the lines (or points) cover at a hit.
float Shader::_lineAlpha(const ShadedPoint& point, const ViewRay& ray) const
{
    const bool points = m_view.settings.drawMode == DrawMode::Points;
    const float span = m_view.camera.isPerspective() ? point.hit.t * ray.depthScale : 1.0f;
    const float pixel = std::max(m_view.camera.pixelWidth() * span, 1e-30f);
    const float distance =
        points ? distanceToVertex(*m_view.scene, point.hit, point.surface.position)
               : distanceToEdge(*m_view.scene, point.hit) *
                     std::max(std::abs(dot(point.surface.geometricNormal, ray.direction)), 0.2f);
    const float half = points ? 2.0f : 0.7f;
    return std::clamp(half + 0.5f - distance / pixel, 0.0f, 1.0f);
}

void Shader::shade(std::vector<ShadedPoint>& points)
{
    m_rays.clear();
    m_contributions.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
        ShadedPoint& point = points[i];
        if (point.alpha <= 0.0f) continue;
        _addUnshadowed(point);
        _queueDome(point, i);
        _queueLights(point, i);
    }
    _resolve(points);
    if (m_view.settings.drawMode != DrawMode::WireframeOnSurface) return;
    for (ShadedPoint& point : points) {
        ViewRay ray;
        ray.direction = point.viewDirection;
        ray.depthScale = -dot(point.viewDirection, m_view.camera.backward());
        point.color = lerp(point.color, Vec3(0.01f), 0.8f * _lineAlpha(point, ray));
    }
}

void Shader::_addUnshadowed(ShadedPoint& point) const
{
    point.color = point.surface.material->emission + point.surface.color * m_view.lights.ambient;
    for (const FrameLight& light : m_view.lights.lights) {
        if (light.shadows) continue;
        const Sample2 s{0.0f, 0.0f};
        point.color += reflected(point, sampleLight(light, point.surface.position, s));
    }
}

// One ray into the half space above the surface stands for the dome; the sky is brighter than the ground.
void Shader::_queueDome(const ShadedPoint& point, std::size_t index)
{
    if (isDark(m_view.lights.dome)) return;
    const Sample2 s = sequencePoint(static_cast<std::uint32_t>(m_sample), point.seed);
    const Vec3 direction = cosineDirection(point.surface.normal, s);
    const float height = 0.5f + 0.5f * dot(direction, m_view.lights.up);
    const float brightness = kGroundBrightness + (1.0f - kGroundBrightness) * height;
    const Vec3 lit = point.surface.color * m_view.lights.dome * brightness;
    _queue(point.surface.position + point.surface.geometricNormal * offsetAt(point.hit.t), direction,
           kDomeReach * m_view.scene->radius(), index, lit, lit * kBounce);
}

void Shader::_queueLights(const ShadedPoint& point, std::size_t index)
{
    std::uint32_t number = 1;
    for (const FrameLight& light : m_view.lights.lights) {
        ++number;
        if (!light.shadows) continue;
        const Sample2 s =
            sequencePoint(static_cast<std::uint32_t>(m_sample), point.seed + number * 0x632be5abu);
        const LightSample sample = sampleLight(light, point.surface.position, s);
        const Vec3 lit = reflected(point, sample);
        if (isDark(lit) || !isFinite(lit)) continue;
        _queue(point.surface.position + point.surface.geometricNormal * offsetAt(point.hit.t),
               sample.direction, sample.distance, index, lit, Vec3());
    }
}

void Shader::_queue(Vec3 from, Vec3 direction, float distance, std::size_t index, Vec3 lit, Vec3 blocked)
{
    m_rays.push_back(makeRay(from, direction, distance));
    m_contributions.push_back({index, lit, blocked});
}

void Shader::_resolve(std::vector<ShadedPoint>& points)
{
    if (!m_rays.empty()) m_view.scene->occluded(m_rays.data(), static_cast<unsigned>(m_rays.size()), false);
    for (std::size_t i = 0; i < m_contributions.size(); ++i) {
        const Contribution& c = m_contributions[i];
        points[c.point].color += m_rays[i].tfar < 0.0f ? c.blocked : c.lit;
    }
}

} // namespace vesk::renderers::embree
