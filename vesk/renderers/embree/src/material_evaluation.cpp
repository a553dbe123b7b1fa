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

/// Where a texture is looked at, and how wide the place is there.
struct TexturePlace
{
    float s = 0.0f;
    float t = 0.0f;
    float width = 0.0f;
};

TexturePlace moved(const TextureReader& reader, float s, float t)
{
    const float* m = reader.transform;
    return {m[0] * s + m[2] * t + m[4], m[1] * s + m[3] * t + m[5], 0.0f};
}

TexturePlace placeAt(const TextureReader& reader, const Primvar<Vec4>* primvar, const Geometry& g,
                     const ShapePoint& at)
{
    if (!primvar) return moved(reader, reader.coordinates[0], reader.coordinates[1]);
    const Vec4 st = interpolate(g, *primvar, at.primitive, at.u, at.v);
    return moved(reader, st.v[0], st.v[1]);
}

const Primvar<Vec4>* coordinatesOf(const TextureReader& reader, const Geometry& g)
{
    return g.kind == GeometryKind::Triangles ? find(g, reader.primvar) : nullptr;
}

/// A triangle's sides, in space and in texture coordinates.
struct TriangleSides
{
    Vec3 side[2];
    float ds[2];
    float dt[2];

    TriangleSides(const TextureReader& reader, const Primvar<Vec4>& primvar, const Geometry& g,
                  std::uint32_t primitive)
    {
        const TexturePlace corner[3] = {placeAt(reader, &primvar, g, {primitive, 0, 0, 0}),
                                        placeAt(reader, &primvar, g, {primitive, 1, 0, 0}),
                                        placeAt(reader, &primvar, g, {primitive, 0, 1, 0})};
        const Triangle& triangle = g.triangles[primitive];
        for (int i = 0; i < 2; ++i) {
            side[i] = g.points[triangle.point[i + 1]] - g.points[triangle.point[0]];
            ds[i] = corner[i + 1].s - corner[0].s;
            dt[i] = corner[i + 1].t - corner[0].t;
        }
    }
    float determinant() const { return ds[0] * dt[1] - ds[1] * dt[0]; }
};

Vec4 read(const TextureReader& reader, const Geometry& g, const ShapePoint& at)
{
    const Texture* texture = reader.texture.get();
    if (!texture && !reader.tiles) return reader.fallback;
    const Primvar<Vec4>* primvar = coordinatesOf(reader, g);
    TexturePlace place = placeAt(reader, primvar, g, at);
    if (primvar && at.width > 0.0f) {
        const TriangleSides sides(reader, *primvar, g, at.primitive);
        const float area = length(cross(sides.side[0], sides.side[1]));
        if (area > 0.0f) place.width = at.width * std::sqrt(std::abs(sides.determinant()) / area);
    }
    if (reader.tiles) texture = tileAt(*reader.tiles, place.s, place.t);
    if (!texture || !texture->isUsable()) return reader.fallback;
    const Vec4 value =
        texture->sample(place.s, place.t, reader.wrapS, reader.wrapT, reader.colorSpace, place.width);
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
    if (!material.normal.texture) return std::nullopt;
    const TextureReader& reader = *material.normal.texture;
    const Primvar<Vec4>* primvar = coordinatesOf(reader, g);
    const bool readable = reader.tiles || (reader.texture && reader.texture->isUsable());
    if (!readable || !primvar) return std::nullopt;
    const TriangleSides sides(reader, *primvar, g, at.primitive);
    if (sides.determinant() == 0.0f) return std::nullopt;
    const float sign = sides.determinant() > 0.0f ? 1.0f : -1.0f;
    Vec3 tangent = (sides.side[0] * sides.dt[1] - sides.side[1] * sides.dt[0]) * sign;
    tangent = normalized(tangent - normal * dot(normal, tangent));
    const Vec3 bitangent = cross(normal, tangent) * sign;
    const Vec4 n = read(reader, g, at);
    return normalized(tangent * n.v[0] + bitangent * n.v[1] + normal * n.v[2], normal);
}

} // namespace vesk::renderers::embree
