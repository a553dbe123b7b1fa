#include "texture_tiles.h"

#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/propertySpec.h>
#include <vesk/base/logging.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr const char* kPattern = "<UDIM>";
constexpr int kFirstTile = 1001;
constexpr int kTiles = 100;
constexpr int kTilesInARow = 10;

SdfLayerHandle layerOf(const UsdAttribute& source)
{
    for (const SdfPropertySpecHandle& spec : source.GetPropertyStack()) {
        if (spec && spec->HasDefaultValue()) return spec->GetLayer();
    }
    return {};
}

} // namespace

bool isTilePattern(const std::string& path) { return path.find(kPattern) != std::string::npos; }

std::shared_ptr<const TextureTiles> readTiles(const UsdAttribute& source, const std::string& pattern,
                                              TextureStore& textures)
{
    const SdfLayerHandle layer = layerOf(source);
    const std::string anchored = layer ? SdfComputeAssetPathRelativeToLayer(layer, pattern) : pattern;
    const std::size_t at = anchored.find(kPattern);
    auto tiles = std::make_shared<TextureTiles>(kTiles);
    bool any = false;
    for (int i = 0; at != std::string::npos && i < kTiles; ++i) {
        std::string path = anchored;
        path.replace(at, std::string(kPattern).size(), std::to_string(kFirstTile + i));
        const ArResolvedPath resolved = ArGetResolver().Resolve(path);
        if (resolved.empty()) continue;
        (*tiles)[static_cast<std::size_t>(i)] = textures.at(resolved.GetPathString());
        any = true;
    }
    if (!any) {
        VESK_LOG_WARN("Texture {} is not shown: none of its tiles exists", anchored);
        tiles->clear();
    }
    return tiles;
}

const Texture* tileAt(const TextureTiles& tiles, float& s, float& t)
{
    const float column = std::floor(s);
    const float row = std::floor(t);
    if (!(column >= 0.0f && column < kTilesInARow && row >= 0.0f)) return nullptr;
    const float number = row * kTilesInARow + column;
    if (number >= static_cast<float>(tiles.size())) return nullptr;
    s -= column;
    t -= row;
    return tiles[static_cast<std::size_t>(number)].get();
}

} // namespace vesk::renderers::embree
