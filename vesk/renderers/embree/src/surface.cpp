#include "surface.h"

#include <limits>

namespace vesk::renderers::embree {
namespace {

// Spheres have one value a point, curves one a curve.
template <class T>
T valueOf(const Geometry& g, const Primvar<T>& primvar, const SurfaceHit& hit)
{
    if (g.kind == GeometryKind::Triangles) return interpolate(g, primvar, hit.primitive, hit.u, hit.v);
    std::size_t index = 0;
    if (g.kind == GeometryKind::Spheres && primvar.interpolation != Interpolation::Constant)
        index = hit.primitive;
    if (g.kind == GeometryKind::Curves && primvar.interpolation == Interpolation::Uniform) {
        index = g.segmentCurve[hit.primitive];
    }
    return primvar.values[std::min(index, primvar.values.size() - 1)];
}

std::uint32_t elementOf(const Geometry& g, const SurfaceHit& hit)
{
    switch (g.kind) {
    case GeometryKind::Triangles:
        return g.faces[hit.primitive];
    case GeometryKind::Curves:
        return g.segmentCurve[hit.primitive];
    default:
        return hit.primitive;
    }
}

Vec3 towards(Vec3 n, Vec3 direction) { return dot(n, direction) > 0.0f ? -n : n; }

Vec3 toScene(const HitFrame& frame, Vec3 local) { return Vec3(frame.toScene.Transform(local.toGfd())); }

} // namespace

SurfacePoint surfaceAt(const TraceScene& scene, const SurfaceHit& hit, Vec3 origin, Vec3 direction,
                       const Material& defaultMaterial, bool flat)
{
    const HitFrame frame = scene.frameOf(hit);
    const SceneItem& item = *frame.item;
    const Geometry& g = *item.geometry;
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
    s.face = elementOf(g, hit);
    const Material* bound = item.materials.of(s.face);
    s.material = bound ? bound : &defaultMaterial;
    const Material& material = *s.material;
    s.color = material.diffuse;
    if (material.usesDisplayColor && !g.colors.empty()) {
        s.color = valueOf(g, g.colors, hit);
    } else if (material.usesDisplayColor && item.displayColor) {
        s.color = *item.displayColor;
    }
    s.opacity = material.opacity * (g.opacities.empty() ? item.displayOpacity : valueOf(g, g.opacities, hit));
    s.opacity = s.opacity >= 0.0f ? std::min(s.opacity, 1.0f) : 0.0f;
    s.color = isFinite(s.color) ? max(s.color, 0.0f) : Vec3(0.5f);
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
