#include "shading.h"

#include "drawing.h"
#include "tile_tracer.h"

namespace vesk::renderers::embree {
namespace {

constexpr float kBounce = 0.3f;    // of the surroundings' light still arrives where something near blocks it
constexpr float kDomeReach = 0.5f; // in radii of the scene: things farther away do not darken
constexpr float kFar = 1e30f;
constexpr float kSharpness = 0.5f;      // of a pixel that one sample stands for: several share it
constexpr float kLeastPassing = 0.002f; // of light: less is dark
constexpr int kMaxShadowLayers = 8;     // of transparent surfaces between a light and a point
constexpr float kBrightest = 50.0f;     // of one sample of the surroundings: rarer ones would never settle

Vec3 reflected(const ShadedPoint& p, const FrameLight& light, const LightSample& sample)
{
    const float cosine = dot(p.surface.normal, sample.direction);
    if (cosine <= 0.0f) return {};
    return p.surface.reflection.between(p.surface.normal, -p.viewDirection, sample.direction, light.diffuse,
                                        light.specular) *
           sample.irradiance * cosine;
}

Vec3 tamed(Vec3 c)
{
    return {std::min(c.x, kBrightest), std::min(c.y, kBrightest), std::min(c.z, kBrightest)};
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

Shader::Shader(const FrameView& view, int sample, bool mirrors)
    : m_view(view), m_looks(view.looks()), m_sample(sample), m_mirrors(mirrors)
{}

float Shader::_pixelAt(float t) const
{
    return kSharpness * m_view.camera.pixelWidth() * (m_view.camera.isPerspective() ? std::abs(t) : 1.0f);
}

float Shader::offsetAt(float t) const { return 2e-5f * (m_view.scene->radius() + std::abs(t)); }

ShadedPoint Shader::prepare(const SurfaceHit& hit, const ViewRay& ray, std::uint32_t seed) const
{
    ShadedPoint point;
    point.hit = hit;
    point.seed = seed;
    point.viewDirection = ray.direction;
    point.travelled = ray.travelled;
    const DrawMode mode = m_view.settings.drawMode;
    point.surface =
        surfaceAt(*m_view.scene, hit, ray.origin, ray.direction, m_looks, _pixelAt(ray.travelled + hit.t));
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
    m_reflected.clear();
    for (std::size_t i = 0; i < points.size(); ++i) {
        ShadedPoint& point = points[i];
        if (point.alpha <= 0.0f) continue;
        _addUnshadowed(point);
        _queueDiffuse(point, i);
        _queueMirror(point, i);
        _queueLights(point, i);
    }
    if (m_view.scene->isSolid()) {
        _resolve(points);
    } else {
        _resolveThrough(points);
    }
    _resolveMirrors(points);
    if (m_view.settings.drawMode != DrawMode::WireframeOnSurface) return;
    for (ShadedPoint& point : points) {
        ViewRay ray;
        ray.direction = point.viewDirection;
        ray.depthScale = -dot(point.viewDirection, m_view.camera.backward());
        point.color = lerp(point.color, Vec3(0.01f), 0.8f * _lineAlpha(point, ray));
    }
}

Sample2 Shader::_random(const ShadedPoint& point, std::uint32_t purpose) const
{
    return sequencePoint(static_cast<std::uint32_t>(m_sample), point.seed + purpose * 0x632be5abu);
}

void Shader::_addUnshadowed(ShadedPoint& point) const
{
    point.color = point.surface.emission + point.surface.color * m_view.lights.ambient;
    for (const FrameLight& light : m_view.lights.lights) {
        if (light.shadows) continue;
        const Vec3 lit = reflected(point, light, sampleLight(light, point.surface.position, {0.0f, 0.0f}));
        if (isFinite(lit)) point.color += lit;
    }
}

// One ray into the half space above the surface stands for the surroundings. Where these are a picture, every
// other ray looks for its bright places; both ways are weighed by what either of them would have chosen.
void Shader::_queueDiffuse(const ShadedPoint& point, std::size_t index)
{
    const FrameLights& lights = m_view.lights;
    if (isDark(point.surface.reflection.diffuse) || (isDark(lights.dome) && lights.domes.empty())) return;
    const Vec3 normal = point.surface.normal;
    const Sample2 s = _random(point, 0);
    Vec3 direction;
    float weight = 1.0f;
    if (lights.domes.empty()) {
        direction = cosineDirection(normal, s);
    } else {
        const Dome& dome = lights.domes.front();
        float density = 0.0f;
        if ((m_sample + static_cast<int>(point.seed & 1)) % 2 == 0) {
            direction = cosineDirection(normal, s);
            density = dome.density(direction);
        } else {
            direction = dome.sample(s, density);
        }
        const float cosine = dot(direction, normal);
        if (cosine <= 0.0f) return;
        const float byCosine = cosine / 3.14159265f;
        weight = byCosine / (0.5f * byCosine + 0.5f * density);
    }
    const Vec3 lit = tamed(point.surface.reflection.diffuse * lights.surroundings(direction) * weight);
    if (!isFinite(lit)) return;
    _queue(point, direction, kDomeReach * m_view.scene->radius(), index, lit, lit * kBounce);
}

void Shader::_queueMirror(const ShadedPoint& point, std::size_t index)
{
    const FrameLights& lights = m_view.lights;
    if (!point.surface.reflection.mirrors()) return;
    if (!m_mirrors && isDark(lights.dome) && lights.domes.empty()) return;
    Vec3 direction;
    Vec3 share;
    if (!point.surface.reflection.sampleMirror(point.surface.normal, -point.viewDirection, _random(point, 1),
                                               direction, share)) {
        return;
    }
    if (m_mirrors) {
        _queueReflected(point, direction, share, index);
        return;
    }
    const Vec3 lit = tamed(share * lights.surroundings(direction));
    if (!isFinite(lit)) return;
    _queue(point, direction, 4.0f * m_view.scene->reach(), index, lit, lit * kBounce);
}

void Shader::_queueLights(const ShadedPoint& point, std::size_t index)
{
    std::uint32_t number = 1;
    for (const FrameLight& light : m_view.lights.lights) {
        ++number;
        if (!light.shadows) continue;
        const LightSample sample = sampleLight(light, point.surface.position, _random(point, number));
        const Vec3 lit = reflected(point, light, sample);
        if (isDark(lit) || !isFinite(lit)) continue;
        _queue(point, sample.direction, sample.distance, index, lit, Vec3());
    }
}

void Shader::_queue(const ShadedPoint& point, Vec3 direction, float distance, std::size_t index, Vec3 lit,
                    Vec3 blocked)
{
    const Vec3 side = point.surface.geometricNormal;
    const Vec3 from = point.surface.position + side * offsetAt(point.hit.t);
    if (!isTraceable(from, direction) || std::isnan(distance)) return;
    m_rays.push_back(makeRay(from, direction, distance));
    m_contributions.push_back({index, lit, blocked});
}

void Shader::_queueReflected(const ShadedPoint& point, Vec3 direction, Vec3 share, std::size_t index)
{
    ViewRay ray;
    ray.origin = point.surface.position + point.surface.geometricNormal * offsetAt(point.hit.t);
    ray.direction = direction;
    ray.tFar = kFar;
    ray.travelled = point.travelled + std::abs(point.hit.t);
    m_reflected.push_back({index, ray, share});
}

void Shader::_resolve(std::vector<ShadedPoint>& points)
{
    if (!m_rays.empty()) m_view.scene->occluded(m_rays.data(), static_cast<unsigned>(m_rays.size()), false);
    for (std::size_t i = 0; i < m_contributions.size(); ++i) {
        const Contribution& c = m_contributions[i];
        points[c.point].color += m_rays[i].tfar < 0.0f ? c.blocked : c.lit;
        points[c.point].rays += 1.0f;
    }
}

// How much light comes along a ray past what it meets: each surface is looked up on the way.
float Shader::_passing(const RTCRay& shadowRay, float& traced) const
{
    ViewRay ray;
    ray.origin = {shadowRay.org_x, shadowRay.org_y, shadowRay.org_z};
    ray.direction = {shadowRay.dir_x, shadowRay.dir_y, shadowRay.dir_z};
    ray.tFar = shadowRay.tfar;
    float passing = 1.0f;
    for (int layer = 0; layer < kMaxShadowLayers && ray.tNear < ray.tFar; ++layer) {
        traced += 1.0f;
        const std::optional<SurfaceHit> hit = m_view.scene->intersect(ray);
        if (!hit) break;
        passing *= 1.0f - opacityAt(*m_view.scene, *hit, m_looks);
        if (passing < kLeastPassing) return 0.0f;
        ray.tNear = hit->t + offsetAt(hit->t);
    }
    return passing;
}

void Shader::_resolveThrough(std::vector<ShadedPoint>& points)
{
    for (std::size_t i = 0; i < m_contributions.size(); ++i) {
        const Contribution& c = m_contributions[i];
        ShadedPoint& point = points[c.point];
        point.color += lerp(c.blocked, c.lit, _passing(m_rays[i], point.rays));
    }
}

// What a mirrored ray hits is lit as the scene is, but its own mirrors show the surroundings alone.
void Shader::_resolveMirrors(std::vector<ShadedPoint>& points)
{
    if (m_reflected.empty()) return;
    Shader inner(m_view, m_sample, false);
    std::vector<ShadedPoint> seen;
    std::vector<std::size_t> numbers; // of the mirrored rays that see something
    for (std::size_t i = 0; i < m_reflected.size(); ++i) {
        ShadedPoint& point = points[m_reflected[i].point];
        point.rays += 1.0f;
        const std::optional<SurfaceHit> hit = m_view.scene->intersect(m_reflected[i].ray);
        if (!hit) continue;
        seen.push_back(inner.prepare(*hit, m_reflected[i].ray, hash(point.seed)));
        numbers.push_back(i);
    }
    inner.shade(seen);
    std::size_t next = 0;
    for (std::size_t i = 0; i < m_reflected.size(); ++i) {
        ShadedPoint& point = points[m_reflected[i].point];
        Vec3 color = m_view.lights.surroundings(m_reflected[i].ray.direction);
        if (next < numbers.size() && numbers[next] == i) {
            color = lerp(color, seen[next].color, seen[next].alpha);
            point.rays += seen[next].rays;
            ++next;
        }
        const Vec3 added = tamed(m_reflected[i].share * color);
        if (isFinite(added)) point.color += added;
    }
}

} // namespace vesk::renderers::embree
