#include "material_evaluation.h"

namespace vesk::renderers::embree {
namespace {

const Primvar<Vec4>* find(const Geometry& g, const std::string& name)
{
    for (const NamedPrimvar& primvar : g.primvars) {
        if (primvar.name == name) return &primvar.values;
    }
    return nullptr;
}

void coordinatesAt(const TextureReader& reader, const Geometry& g, const ShapePoint& at, float& s, float& t)
{
    s = reader.coordinates[0];
    t = reader.coordinates[1];
    const Primvar<Vec4>* primvar = find(g, reader.primvar);
    if (primvar && g.kind == GeometryKind::Triangles) {
        const Vec4 st = interpolate(g, *primvar, at.primitive, at.u, at.v);
        s = st.v[0];
        t = st.v[1];
    }
    const float* m = reader.transform;
    const float moved = m[0] * s + m[2] * t + m[4];
    t = m[1] * s + m[3] * t + m[5];
    s = moved;
}

Vec4 read(const TextureReader& reader, const Geometry& g, const ShapePoint& at)
{
    if (!reader.texture || !reader.texture->isUsable()) return reader.fallback;
    float s = 0.0f;
    float t = 0.0f;
    coordinatesAt(reader, g, at, s, t);
    const Vec4 value = reader.texture->sample(s, t, reader.wrapS, reader.wrapT, reader.colorSpace);
    Vec4 result;
    for (int i = 0; i < 4; ++i)
        result.v[i] = value.v[i] * reader.scale.v[i] + reader.bias.v[i];
    return result;
}

} // namespace

Vec4 evaluate(const MaterialInput& input, const Geometry& g, const ShapePoint& at)
{
    if (input.texture) {
        const Vec4 value = read(*input.texture, g, at);
        if (input.channel < 0) return value;
        const float v = value.v[input.channel];
        return {{v, v, v, v}};
    }
    if (!input.primvar.empty() && g.kind == GeometryKind::Triangles) {
        if (const Primvar<Vec4>* primvar = find(g, input.primvar))
            return interpolate(g, *primvar, at.primitive, at.u, at.v);
    }
    return input.value;
}

std::optional<Vec3> mappedNormal(const Material& material, const Geometry& g, const ShapePoint& at,
                                 Vec3 normal)
{
    if (!material.normal.texture || g.kind != GeometryKind::Triangles) return std::nullopt;
    const TextureReader& reader = *material.normal.texture;
    if (!reader.texture || !reader.texture->isUsable() || !find(g, reader.primvar)) return std::nullopt;
    float s[3];
    float t[3];
    const float corners[3][2] = {{0, 0}, {1, 0}, {0, 1}};
    for (int k = 0; k < 3; ++k)
        coordinatesAt(reader, g, {at.primitive, corners[k][0], corners[k][1]}, s[k], t[k]);
    const Triangle& triangle = g.triangles[at.primitive];
    const Vec3 e1 = g.points[triangle.point[1]] - g.points[triangle.point[0]];
    const Vec3 e2 = g.points[triangle.point[2]] - g.points[triangle.point[0]];
    const float ds1 = s[1] - s[0];
    const float ds2 = s[2] - s[0];
    const float dt1 = t[1] - t[0];
    const float dt2 = t[2] - t[0];
    const float determinant = ds1 * dt2 - ds2 * dt1;
    if (determinant == 0.0f) return std::nullopt;
    const float sign = determinant > 0.0f ? 1.0f : -1.0f;
    Vec3 tangent = (e1 * dt2 - e2 * dt1) * sign;
    tangent = normalized(tangent - normal * dot(normal, tangent));
    const Vec3 bitangent = cross(normal, tangent) * sign;
    const Vec4 n = read(reader, g, at);
    return normalized(tangent * n.v[0] + bitangent * n.v[1] + normal * n.v[2], normal);
}

} // namespace vesk::renderers::embree
