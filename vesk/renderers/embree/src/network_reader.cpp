#include "network_reader.h"

#include "stage_reading.h"
#include "texture_tiles.h"

#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>
#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr int kMaxConnections = 32;

TfToken inputName(const char* name) { return TfToken(std::string("inputs:") + name); }

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

// MaterialX's names; without one an image repeats.
TextureWrap addressModeOf(const std::string& mode)
{
    if (mode == "clamp") return TextureWrap::Clamp;
    if (mode == "mirror") return TextureWrap::Mirror;
    return mode == "constant" ? TextureWrap::Black : TextureWrap::Repeat;
}

bool startsWith(const TfToken& token, const char* text) { return token.GetString().rfind(text, 0) == 0; }

bool isImageNode(const TfToken& id)
{
    return startsWith(id, "ND_image_") || startsWith(id, "ND_tiledimage_");
}

bool isPrimvarNode(const TfToken& id)
{
    return startsWith(id, "UsdPrimvarReader") || startsWith(id, "ND_geompropvalue_") ||
           startsWith(id, "ND_UsdPrimvarReader_");
}

// The name of the output at the end of a chain of connections.
TfToken outputThatFeeds(UsdAttribute attribute)
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

int channelOf(const TfToken& output)
{
    if (output == "outputs:r") return 0;
    if (output == "outputs:g") return 1;
    if (output == "outputs:b") return 2;
    if (output == "outputs:a") return 3;
    return -1;
}

} // namespace

UsdAttribute sourceOf(UsdAttribute attribute)
{
    for (int i = 0; attribute && i < kMaxConnections; ++i) {
        SdfPathVector sources;
        attribute.GetConnections(&sources);
        if (sources.empty()) return attribute;
        const UsdAttribute next = attribute.GetStage()->GetAttributeAtPath(sources.front());
        if (!next)
            return attribute.GetStage()
                ->GetPrimAtPath(sources.front().GetPrimPath())
                .GetAttribute(TfToken("info:id"));
        attribute = next;
    }
    return {};
}

MaterialInput NetworkReader::input(const UsdPrim& shader, const char* name, MaterialInput fallback)
{
    const UsdAttribute attribute = shader.GetAttribute(inputName(name));
    if (!attribute) return fallback;
    const UsdAttribute source = sourceOf(attribute);
    if (!source) return fallback;
    const UsdPrim node = source.GetPrim();
    const TfToken id = node == shader ? TfToken() : idOf(node);
    if (id == "UsdUVTexture" || id == "ND_UsdUVTexture") {
        fallback.texture = _previewTexture(node);
        fallback.channel = channelOf(outputThatFeeds(attribute));
    } else if (isImageNode(id)) {
        const bool isNumber =
            id.GetString().size() > 6 && id.GetString().rfind("_float") != std::string::npos;
        fallback.texture = _imageTexture(node, id.GetString().rfind("_color") != std::string::npos);
        fallback.channel = isNumber ? 0 : -1;
    } else if (isPrimvarNode(id)) {
        fallback.primvar = _text(node, startsWith(id, "ND_geomprop") ? "geomprop" : "varname");
        _number(node, startsWith(id, "ND_geomprop") ? "default" : "fallback", fallback.value);
    } else {
        VtValue value;
        if (source.Get(&value, m_time)) toNumbers(value, fallback.value);
    }
    return fallback;
}

float NetworkReader::number(const UsdPrim& shader, const char* name, float fallback)
{
    Vec4 value{{fallback, 0, 0, 0}};
    _number(shader, name, value);
    return value.v[0];
}

bool NetworkReader::isFed(const UsdPrim& shader, const char* name) const
{
    const UsdAttribute source = sourceOf(shader.GetAttribute(inputName(name)));
    return source && source.GetPrim() != shader;
}

TfToken NetworkReader::idOf(const UsdPrim& node) const
{
    return readAttribute(node, "info:id", m_time, TfToken());
}

bool NetworkReader::_number(const UsdPrim& node, const char* name, Vec4& value) const
{
    const UsdAttribute source = sourceOf(node.GetAttribute(inputName(name)));
    VtValue held;
    return source && source.Get(&held, m_time) && toNumbers(held, value);
}

template <class T>
T NetworkReader::_value(const UsdPrim& node, const char* name, const T& fallback) const
{
    const UsdAttribute source = sourceOf(node.GetAttribute(inputName(name)));
    T value;
    return source && source.Get(&value, m_time) ? value : fallback;
}

std::string NetworkReader::_text(const UsdPrim& node, const char* name) const
{
    const std::string text = _value(node, name, std::string());
    return text.empty() ? _value(node, name, TfToken()).GetString() : text;
}

// The picture itself, or one for each square of the texture coordinates.
void NetworkReader::_readTexture(const UsdPrim& node, TextureReader& reader)
{
    const UsdAttribute source = sourceOf(node.GetAttribute(inputName("file")));
    SdfAssetPath asset;
    if (!source || !source.Get(&asset, m_time)) return;
    if (isTilePattern(asset.GetAssetPath())) {
        reader.tiles = readTiles(source, asset.GetAssetPath(), m_textures);
        return;
    }
    const std::string& path =
        asset.GetResolvedPath().empty() ? asset.GetAssetPath() : asset.GetResolvedPath();
    if (!path.empty()) reader.texture = m_textures.at(path);
}

std::shared_ptr<const TextureReader> NetworkReader::_previewTexture(const UsdPrim& node)
{
    auto reader = std::make_shared<TextureReader>();
    _readTexture(node, *reader);
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

// MaterialX: the file says its colour space, the coordinates are `st` unless a node gives others.
std::shared_ptr<const TextureReader> NetworkReader::_imageTexture(const UsdPrim& node, bool isColor)
{
    auto reader = std::make_shared<TextureReader>();
    _readTexture(node, *reader);
    reader->wrapS = addressModeOf(_text(node, "uaddressmode"));
    reader->wrapT = addressModeOf(_text(node, "vaddressmode"));
    const UsdAttribute file = sourceOf(node.GetAttribute(inputName("file")));
    const std::string space = file ? file.GetColorSpace().GetString() : std::string();
    if (!isColor || space == "lin_rec709" || space == "raw") reader->colorSpace = TextureColorSpace::Raw;
    if (space.rfind("srgb", 0) == 0) reader->colorSpace = TextureColorSpace::Srgb;
    _number(node, "default", reader->fallback);
    reader->primvar = "st";
    if (isFed(node, "texcoord")) _readCoordinates(node, "texcoord", *reader);
    Vec4 tiling{{1, 1, 1, 1}};
    if (startsWith(idOf(node), "ND_tiledimage_") && _number(node, "uvtiling", tiling)) {
        for (int row = 0; row < 3; ++row) {
            reader->transform[2 * row] *= tiling.v[0];
            reader->transform[2 * row + 1] *= tiling.v[1];
        }
    }
    return reader;
}

// From a texture through any UsdTransform2d to the primvar reader or the value.
void NetworkReader::_readCoordinates(const UsdPrim& node, const char* name, TextureReader& reader)
{
    UsdPrim at = node;
    const char* input = name;
    for (int i = 0; i < kMaxConnections; ++i) {
        const UsdAttribute source = sourceOf(at.GetAttribute(inputName(input)));
        if (!source) return;
        const UsdPrim prim = source.GetPrim();
        const TfToken id = prim == at ? TfToken() : idOf(prim);
        if (id == "UsdTransform2d" || id == "ND_UsdTransform2d") {
            _applyTransform(prim, reader);
            at = prim;
            input = "in";
            continue;
        }
        Vec4 value;
        if (startsWith(id, "ND_texcoord_")) {
            reader.primvar = "st";
        } else if (isPrimvarNode(id)) {
            reader.primvar = _text(prim, startsWith(id, "ND_geomprop") ? "geomprop" : "varname");
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
void NetworkReader::_applyTransform(const UsdPrim& node, TextureReader& reader) const
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

} // namespace vesk::renderers::embree
