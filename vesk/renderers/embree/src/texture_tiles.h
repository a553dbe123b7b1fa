#pragma once

#include "texture.h"

#include <pxr/usd/usd/attribute.h>

#include <memory>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

/// The pictures of a tiled texture: tile i covers the square of the coordinates whose lower left corner is
/// (i % 10, i / 10); null where there is none.
using TextureTiles = std::vector<std::shared_ptr<const Texture>>;

/// Whether a path stands for many pictures, with `<UDIM>` in the place of their numbers.
bool isTilePattern(const std::string& path);

/// The pictures that exist of 1001 to 1100, looked for where the attribute's strongest opinion lies; empty
/// where there is none.
/// \param source holds `pattern`
std::shared_ptr<const TextureTiles> readTiles(const PXR_NS::UsdAttribute& source, const std::string& pattern,
                                              TextureStore& textures);

/// The tile at texture coordinates, null for none; the coordinates become those inside it.
const Texture* tileAt(const TextureTiles& tiles, float& s, float& t);

} // namespace vesk::renderers::embree
