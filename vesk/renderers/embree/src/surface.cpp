#include "surface.h"

#include "material_evaluation.h"

#include <limits>

namespace vesk::renderers::embree {
namespace {

// Spheres have one value a point, curves one a curve or one a point of their chain.
template <class T>
T valueOf(const Geometry& g, const Primvar<T>& primvar, const SurfaceHit& hit)
{
    if (g.kind == GeometryKind::Triangles) return interpolate(g, primvar, hit.primitive, hit.u, hit.v);
    std::size_t index = 0;
    if (g.kind == GeometryKind::Spheres && primvar.interpolation != Interpolation::Constant)
        index = hit.primitive;
    if (g.kind == GeometryKind::Curves && primvar.interpolation == Interpolation::Uniform) {
        index = g.segmentCurve[hit.primitive];
    } else if (g.kind == GeometryKind::Curves && primvar.interpolation > Interpolation::Uniform) {
        index = g.segments[hit.primitive];
        if (index + 1 < primvar.values.size())
            return primvar.values[index] * (1.0f - hit.u) + primvar.values[index + 1] * hit.u;
    }
    return primvar.values[std::min(index, primvar.values.size() - 1)];
}

Vec3 towards(Vec3 n, Vec3 direction) { return dot(n, direction) > 0.0f ? -n : n; }

Vec3 toScene(const HitFrame& frame, Vec3 local) { return Vec3(frame.toScene.Transform(local.toGfd())); }

} // namespace

namespace {

SurfacePoint placeIn(const HitFrame& frame, const SurfaceHit& hit, Vec3 origin, Vec3 direction, bool flat)
{
    const Geometry& g = *frame.item->geometry;
    SurfacePoint s;
    s.position = origin + direction * hit.t;
    s.geometricNormal =
        towards(normalized(frame.groupNormalToWorld.apply(hit.geometricNormal), -direction), direction);
    s.normal = s.geometricNormal;
    if (!flat && !g.normals.empty() && g.kind == GeometryKind::Triangles) {
        const Vec3 n = frame.normalToWorld.apply(interpolate(g, g.normals, hit.primitive, hit.u, hit.v));
        const Vec3 unit = normalized(n, s.geometricNormal);
        s.normal = dot(unit, s.geometricNormal) < 0.0f ? -unit : unit;
    }
    s.face = elementOf(g, hit.primitive);
    return s;
}

Vec3 rgb(const Vec4& v) { return {v.v[0], v.v[1], v.v[2]}; }

Vec3 usable(Vec3 c) { return isFinite(c) ? max(c, 0.0f) : Vec3(0.5f); }

float share(const Vec4& v) { return v.v[0] >= 0.0f ? std::min(v.v[0], 1.0f) : 0.0f; }

// The display colour of the shape, else the one from above, else the material's own.
Vec3 baseColor(const SceneItem& item, const Material& material, const SurfaceHit& hit, const ShapePoint& at,
               bool displayColors)
{
    if (material.usesDisplayColor && displayColors) {
        if (!item.geometry->colors.empty())
            return usable(valueOf(*item.geometry, item.geometry->colors, hit));
        if (item.displayColor) return usable(*item.displayColor);
    }
    return usable(rgb(evaluate(material.diffuse, *item.geometry, at)));
}

float opacityOf(const SceneItem& item, const Material& material, const SurfaceHit& hit, const ShapePoint& at)
{
    const Geometry& g = *item.geometry;
    float opacity = share(evaluate(material.opacity, g, at));
    if (material.usesDisplayColor)
        opacity *= g.opacities.empty() ? item.displayOpacity : valueOf(g, g.opacities, hit);
    opacity = opacity >= 0.0f ? std::min(opacity, 1.0f) : 0.0f;
    if (material.opacityThreshold > 0.0f) return opacity >= material.opacityThreshold ? 1.0f : 0.0f;
    return opacity;
}

Reflection reflectionOf(const Material& material, const Geometry& g, const ShapePoint& at, Vec3 color)
{
    Reflection r;
    const float metallic = material.specularWorkflow ? 0.0f : share(evaluate(material.metallic, g, at));
    const float ratio = (1.0f - material.ior) / (1.0f + material.ior);
    const Vec3 straight = material.specularWorkflow ? usable(rgb(evaluate(material.specular, g, at)))
                                                    : Vec3(std::isfinite(ratio) ? ratio * ratio : 0.04f);
    r.specular = lerp(straight, color, metallic);
    r.diffuse = color * (1.0f - metallic);
    r.roughness = share(evaluate(material.roughness, g, at));
    r.reflective = material.mirrors;
    r.coat = share(evaluate(material.clearcoat, g, at));
    if (r.coat > 0.0f) r.coatRoughness = share(evaluate(material.clearcoatRoughness, g, at));
    return r;
}

} // namespace

namespace {

const Material& materialOf(const SceneItem& item, std::uint32_t face, const SurfaceLooks& looks)
{
    const Material* bound = looks.materials ? item.materials.of(face) : nullptr;
    return bound ? *bound : *looks.defaultMaterial;
}

// Whether a surface is seen from its back; a mirrored place turns its faces.
bool isBehind(const HitFrame& frame, const SurfaceHit& hit, Vec3 direction)
{
    const Mat3& m = frame.toWorld;
    const bool mirrored = dot(m.row0, cross(m.row1, m.row2)) < 0.0f;
    return (dot(frame.groupNormalToWorld.apply(hit.geometricNormal), direction) > 0.0f) != mirrored;
}

// How many times longer lengths become, over all directions.
float scaleOf(const Mat3& m)
{
    const float volume = std::abs(dot(m.row0, cross(m.row1, m.row2)));
    return std::max(std::cbrt(volume), 1e-30f);
}

} // namespace

SurfacePoint placeAt(const TraceScene& scene, const SurfaceHit& hit, Vec3 origin, Vec3 direction, bool flat)
{
    return placeIn(scene.frameOf(hit), hit, origin, direction, flat);
}

float opacityAt(const TraceScene& scene, const SurfaceHit& hit, const SurfaceLooks& looks)
{
    const SceneItem& item = scene.itemOf(hit.placement, hit.item);
    const Material& material = materialOf(item, elementOf(*item.geometry, hit.primitive), looks);
    return opacityOf(item, material, hit, {hit.primitive, hit.u, hit.v, 0.0f});
}

SurfacePoint surfaceAt(const TraceScene& scene, const SurfaceHit& hit, Vec3 origin, Vec3 direction,
                       const SurfaceLooks& looks, float pixel)
{
    const HitFrame frame = scene.frameOf(hit);
    SurfacePoint s = placeIn(frame, hit, origin, direction, looks.flat);
    const SceneItem& item = *frame.item;
    const Geometry& g = *item.geometry;
    const Material& material = materialOf(item, s.face, looks);
    const float facing = std::max(std::abs(dot(s.geometricNormal, direction)), 0.05f);
    const ShapePoint at{hit.primitive, hit.u, hit.v, pixel / (scaleOf(frame.toWorld) * std::sqrt(facing))};
    s.color = baseColor(item, material, hit, at, looks.displayColors);
    s.opacity =
        material.isOneSided && isBehind(frame, hit, direction) ? 0.0f : opacityOf(item, material, hit, at);
    s.emission = usable(rgb(evaluate(material.emission, g, at)));
    s.reflection = reflectionOf(material, g, at, s.color);
    if (!looks.flat && material.normal.texture && !g.normals.empty() && g.kind == GeometryKind::Triangles) {
        const Vec3 own = normalized(interpolate(g, g.normals, hit.primitive, hit.u, hit.v));
        if (const auto mapped = mappedNormal(material, g, at, own)) {
            const Vec3 unit = normalized(frame.normalToWorld.apply(*mapped), s.normal);
            const bool turned = dot(frame.normalToWorld.apply(own), s.normal) < 0.0f;
            s.normal = turned ? -unit : unit;
        }
    }
    return s;
}

float distanceToEdge(const TraceScene& scene, const SurfaceHit& hit)
{
    const HitFrame frame = scene.frameOf(hit);
    const Geometry& g = *frame.item->geometry;
    float nearest = std::numeric_limits<float>::max();
    if (g.kind != GeometryKind::Triangles) return nearest;
    const Triangle& t = g.triangles[hit.primitive];
    const Vec3 p[3] = {frame.toWorld.apply(g.points[t.point[0]]), frame.toWorld.apply(g.points[t.point[1]]),
                       frame.toWorld.apply(g.points[t.point[2]])};
    const float doubleArea = length(cross(p[1] - p[0], p[2] - p[0]));
    const float weight[3] = {1.0f - hit.u - hit.v, hit.u, hit.v};
    for (int i = 0; i < 3; ++i) {
        if (!(g.outlineEdges[hit.primitive] >> i & 1)) continue;
        // The height over an edge is the opposite corner's weight of that corner's height.
        const float edge = length(p[(i + 1) % 3] - p[i]);
        if (edge > 0.0f) nearest = std::min(nearest, weight[(i + 2) % 3] * doubleArea / edge);
    }
    return nearest;
}

float distanceToVertex(const TraceScene& scene, const SurfaceHit& hit, Vec3 position)
{
    const HitFrame frame = scene.frameOf(hit);
    const Geometry& g = *frame.item->geometry;
    if (g.kind != GeometryKind::Triangles) return 0.0f;
    float nearest = std::numeric_limits<float>::max();
    for (const std::uint32_t p : g.triangles[hit.primitive].point) {
        nearest = std::min(nearest, length(toScene(frame, g.points[p]) - position));
    }
    return nearest;
}

} // namespace vesk::renderers::embree
