#include "material_extraction.h"

#include "stage_reading.h"

#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr int kMaxConnections = 32;

// Follows connections from an attribute to the one that holds the value; a chain that is too long is a cycle.
UsdAttribute sourceOf(UsdAttribute attribute)
{
    for (int i = 0; attribute && i < kMaxConnections; ++i) {
        SdfPathVector sources;
        attribute.GetConnections(&sources);
        if (sources.empty()) return attribute;
        const UsdAttribute next = attribute.GetStage()->GetAttributeAtPath(sources.front());
        // An output that is declared nowhere still names its node.
        if (!next)
            return attribute.GetStage()
                ->GetPrimAtPath(sources.front().GetPrimPath())
                .GetAttribute(TfToken("info:id"));
        attribute = next;
    }
    return {};
}

UsdPrim surfaceShader(const UsdPrim& material)
{
    for (const char* name : {"outputs:surface", "outputs:glslfx:surface"}) {
        const UsdAttribute output = material.GetAttribute(TfToken(name));
        if (!output) continue;
        const UsdAttribute source = sourceOf(output);
        if (source && source.GetPrim() != material) return source.GetPrim();
    }
    return {};
}

// Up to four numbers from a value of any of the types that shaders use.
bool toNumbers(const VtValue& value, Vec4& out)
{
    if (value.IsHolding<float>()) {
        const float v = value.UncheckedGet<float>();
        out = {{v, v, v, v}};
    } else if (value.IsHolding<double>()) {
        const auto v = static_cast<float>(value.UncheckedGet<double>());
        out = {{v, v, v, v}};
    } else if (value.IsHolding<int>()) {
        const auto v = static_cast<float>(value.UncheckedGet<int>());
        out = {{v, v, v, v}};
    } else if (value.IsHolding<GfVec2f>()) {
        const GfVec2f v = value.UncheckedGet<GfVec2f>();
        out = {{v[0], v[1], 0, 1}};
    } else if (value.IsHolding<GfVec3f>()) {
        const GfVec3f v = value.UncheckedGet<GfVec3f>();
        out = {{v[0], v[1], v[2], 1}};
    } else if (value.IsHolding<GfVec4f>()) {
        const GfVec4f v = value.UncheckedGet<GfVec4f>();
        out = {{v[0], v[1], v[2], v[3]}};
    } else {
        return false;
    }
    return std::all_of(out.v, out.v + 4, [](float v) { return std::isfinite(v); });
}

TextureWrap wrapOf(const TfToken& token)
{
    if (token == "clamp") return TextureWrap::Clamp;
    if (token == "repeat") return TextureWrap::Repeat;
    if (token == "mirror") return TextureWrap::Mirror;
    // `useMetadata`: the formats that are read here carry none.
    return TextureWrap::Black;
}

/// Reads one material.
class NetworkReader
{
public:
    NetworkReader(UsdTimeCode time, TextureStore& textures) : m_time(time), m_textures(textures) {}

    MaterialInput input(const UsdPrim& shader, const char* name, MaterialInput fallback)
    {
        const UsdAttribute attribute = shader.GetAttribute(TfToken(std::string("inputs:") + name));
        if (!attribute) return fallback;
        const UsdAttribute source = sourceOf(attribute);
        if (!source) return fallback;
        const TfToken node = _idOf(source.GetPrim());
        if (source.GetPrim() != shader && node == "UsdUVTexture") {
            fallback.texture = _texture(source.GetPrim());
            fallback.channel = _channelOf(_outputThatFeeds(attribute));
            return fallback;
        }
        if (source.GetPrim() != shader && node.GetString().rfind("UsdPrimvarReader", 0) == 0) {
            fallback.primvar = _primvarName(source.GetPrim());
            _number(source.GetPrim(), "fallback", fallback.value);
            return fallback;
        }
        VtValue value;
        if (source.Get(&value, m_time)) toNumbers(value, fallback.value);
        return fallback;
    }

    float number(const UsdPrim& shader, const char* name, float fallback)
    {
        Vec4 value{{fallback, 0, 0, 0}};
        _number(shader, name, value);
        return value.v[0];
    }

private:
    TfToken _idOf(const UsdPrim& prim) const { return readAttribute(prim, "info:id", m_time, TfToken()); }

    bool _number(const UsdPrim& shader, const char* name, Vec4& value) const
    {
        const UsdAttribute source = sourceOf(shader.GetAttribute(TfToken(std::string("inputs:") + name)));
        VtValue held;
        return source && source.Get(&held, m_time) && toNumbers(held, value);
    }

    template <class T>
    T _value(const UsdPrim& shader, const char* name, const T& fallback) const
    {
        const UsdAttribute source = sourceOf(shader.GetAttribute(TfToken(std::string("inputs:") + name)));
        T value;
        return source && source.Get(&value, m_time) ? value : fallback;
    }

    // The name of the output at the end of a chain of connections.
    TfToken _outputThatFeeds(UsdAttribute attribute) const
    {
        TfToken name;
        for (int i = 0; attribute && i < kMaxConnections; ++i) {
            SdfPathVector sources;
            attribute.GetConnections(&sources);
            if (sources.empty()) break;
            name = sources.front().GetNameToken();
            attribute = attribute.GetStage()->GetAttributeAtPath(sources.front());
        }
        return name;
    }

    static int _channelOf(const TfToken& output)
    {
        if (output == "outputs:r") return 0;
        if (output == "outputs:g") return 1;
        if (output == "outputs:b") return 2;
        if (output == "outputs:a") return 3;
        return -1;
    }

    std::string _primvarName(const UsdPrim& reader) const
    {
        const std::string text = _value(reader, "varname", std::string());
        return text.empty() ? _value(reader, "varname", TfToken()).GetString() : text;
    }

    std::shared_ptr<const TextureReader> _texture(const UsdPrim& node)
    {
        auto reader = std::make_shared<TextureReader>();
        const SdfAssetPath asset = _value(node, "file", SdfAssetPath());
        const std::string& path =
            asset.GetResolvedPath().empty() ? asset.GetAssetPath() : asset.GetResolvedPath();
        if (!path.empty()) reader->texture = m_textures.at(path);
        reader->wrapS = wrapOf(_value(node, "wrapS", TfToken("useMetadata")));
        reader->wrapT = wrapOf(_value(node, "wrapT", TfToken("useMetadata")));
        const TfToken space = _value(node, "sourceColorSpace", TfToken("auto"));
        if (space == "raw") reader->colorSpace = TextureColorSpace::Raw;
        if (space == "sRGB") reader->colorSpace = TextureColorSpace::Srgb;
        _number(node, "scale", reader->scale);
        _number(node, "bias", reader->bias);
        _number(node, "fallback", reader->fallback);
        _readCoordinates(node, "st", *reader);
        return reader;
    }

    // From a texture through any UsdTransform2d to the primvar reader or the value.
    void _readCoordinates(const UsdPrim& node, const char* name, TextureReader& reader)
    {
        UsdPrim at = node;
        const char* input = name;
        for (int i = 0; i < kMaxConnections; ++i) {
            const UsdAttribute source = sourceOf(at.GetAttribute(TfToken(std::string("inputs:") + input)));
            if (!source) return;
            const UsdPrim prim = source.GetPrim();
            const TfToken id = _idOf(prim);
            if (prim != at && id == "UsdTransform2d") {
                _applyTransform(prim, reader);
                at = prim;
                input = "in";
                continue;
            }
            Vec4 value;
            if (prim != at && id.GetString().rfind("UsdPrimvarReader", 0) == 0) {
                reader.primvar = _primvarName(prim);
                _number(prim, "fallback", value);
            } else {
                VtValue held;
                if (source.Get(&held, m_time)) toNumbers(held, value);
            }
            reader.coordinates[0] = value.v[0];
            reader.coordinates[1] = value.v[1];
            return;
        }
    }

    // in * scale, turned, moved; what was read before comes after it.
    void _applyTransform(const UsdPrim& node, TextureReader& reader) const
    {
        Vec4 scale{{1, 1, 0, 0}};
        Vec4 move;
        Vec4 angle;
        _number(node, "scale", scale);
        _number(node, "translation", move);
        _number(node, "rotation", angle);
        const float radians = angle.v[0] * 3.14159265f / 180.0f;
        const float c = std::cos(radians);
        const float s = std::sin(radians);
        const float own[6] = {c * scale.v[0], s * scale.v[0], -s * scale.v[1],
                              c * scale.v[1], move.v[0],      move.v[1]};
        float* t = reader.transform;
        const float joined[6] = {t[0] * own[0] + t[2] * own[1],        t[1] * own[0] + t[3] * own[1],
                                 t[0] * own[2] + t[2] * own[3],        t[1] * own[2] + t[3] * own[3],
                                 t[0] * own[4] + t[2] * own[5] + t[4], t[1] * own[4] + t[3] * own[5] + t[5]};
        std::copy(joined, joined + 6, t);
    }

    UsdTimeCode m_time;
    TextureStore& m_textures;
};

void gatherPrimvars(Material& material)
{
    const auto add = [&material](const std::string& name) {
        if (!name.empty()) material.primvars.push_back(name);
    };
    for (const MaterialInput* input :
         {&material.diffuse, &material.emission, &material.specular, &material.roughness, &material.metallic,
          &material.opacity, &material.clearcoat, &material.clearcoatRoughness, &material.normal}) {
        add(input->primvar);
        if (input->texture) add(input->texture->primvar);
    }
    std::sort(material.primvars.begin(), material.primvars.end());
    material.primvars.erase(std::unique(material.primvars.begin(), material.primvars.end()),
                            material.primvars.end());
}

} // namespace

std::optional<Material> readMaterial(const UsdPrim& prim, UsdTimeCode time, TextureStore& textures)
{
    if (!prim) return std::nullopt;
    const UsdPrim shader = surfaceShader(prim);
    if (!shader || readAttribute(shader, "info:id", time, TfToken()) != "UsdPreviewSurface")
        return std::nullopt;
    NetworkReader reader(time, textures);
    Material material;
    material.diffuse = reader.input(shader, "diffuseColor", MaterialInput::of(Vec3(0.18f)));
    material.emission = reader.input(shader, "emissiveColor", material.emission);
    material.specular = reader.input(shader, "specularColor", material.specular);
    material.roughness = reader.input(shader, "roughness", material.roughness);
    material.metallic = reader.input(shader, "metallic", material.metallic);
    material.opacity = reader.input(shader, "opacity", material.opacity);
    material.clearcoat = reader.input(shader, "clearcoat", material.clearcoat);
    material.clearcoatRoughness = reader.input(shader, "clearcoatRoughness", material.clearcoatRoughness);
    material.normal = reader.input(shader, "normal", material.normal);
    material.ior = reader.number(shader, "ior", material.ior);
    material.opacityThreshold = reader.number(shader, "opacityThreshold", 0.0f);
    material.specularWorkflow = reader.number(shader, "useSpecularWorkflow", 0.0f) > 0.5f;
    // The shape keeps its display colours, inherited ones too: they need no reading by name.
    material.usesDisplayColor = material.diffuse.primvar == "displayColor";
    if (material.usesDisplayColor) material.diffuse.primvar.clear();
    gatherPrimvars(material);
    return material;
}

} // namespace vesk::renderers::embree
