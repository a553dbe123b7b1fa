#pragma once

#include "geometry.h"
#include "texture.h"
#include "texture_tiles.h"

#include <memory>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

/// How texture coordinates reach a texture and what becomes of its values (UsdUVTexture, UsdTransform2d).
struct TextureReader
{
    std::shared_ptr<const Texture> texture;    ///< null: `fallback` alone
    std::shared_ptr<const TextureTiles> tiles; ///< used instead of `texture`
    std::string primvar;                       ///< the texture coordinates, empty: `coordinates`
    float coordinates[2] = {0.0f, 0.0f};       ///< where the surface has no such primvar
    float transform[6] = {1, 0, 0, 1, 0, 0};   ///< s' = a s + c t + e, t' = b s + d t + f
    TextureWrap wrapS = TextureWrap::Black;
    TextureWrap wrapT = TextureWrap::Black;
    TextureColorSpace colorSpace = TextureColorSpace::Auto;
    Vec4 scale{{1, 1, 1, 1}};
    Vec4 bias;
    Vec4 fallback{{0, 0, 0, 1}};
};

/// One input of a material: a value, or where it comes from.
struct MaterialInput
{
    Vec4 value;
    std::shared_ptr<const TextureReader> texture; ///< used instead of the value
    int channel = -1;                             ///< of the texture; -1: all of them
    std::string primvar;                          ///< read instead of the value where the surface has it

    static MaterialInput of(float v) { return {{{v, v, v, v}}, nullptr, -1, {}}; }
    static MaterialInput of(Vec3 v) { return {{{v.x, v.y, v.z, 1}}, nullptr, -1, {}}; }
};

/// How a surface reflects: the inputs of UsdPreviewSurface, in linear colours.
struct Material
{
    MaterialInput diffuse = MaterialInput::of(Vec3(0.5f));
    MaterialInput emission = MaterialInput::of(Vec3(0.0f));
    MaterialInput specular = MaterialInput::of(Vec3(0.0f)); ///< used by the specular workflow
    MaterialInput roughness = MaterialInput::of(0.5f);
    MaterialInput metallic = MaterialInput::of(0.0f);
    MaterialInput opacity = MaterialInput::of(1.0f);
    MaterialInput clearcoat = MaterialInput::of(0.0f);
    MaterialInput clearcoatRoughness = MaterialInput::of(0.01f);
    MaterialInput normal; ///< used where it has a texture
    float ior = 1.5f;
    float opacityThreshold = 0.0f; ///< above 0: opaque from there on, else not there
    bool specularWorkflow = false;
    bool isOneSided = false;      ///< seen from in front alone
    bool mirrors = true;          ///< whether it shows what lies around it, as far as it is smooth enough
    bool usesDisplayColor = true; ///< display colours replace `diffuse` where the prim has any

    std::vector<std::string> primvars; ///< the names that the inputs read, sorted

    /// Whether anything of what lies behind may show through.
    bool mayBeTransparent() const
    {
        return opacity.texture || !opacity.primvar.empty() || opacity.value.v[0] < 1.0f;
    }
};

} // namespace vesk::renderers::embree
