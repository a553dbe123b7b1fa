#pragma once

#include "drawing.h"
#include "tile_tracer.h"

#include <vesk/framework/hydra_renderer/aov_buffer.h>

namespace vesk::renderers::embree {

/// A coarse film in full size: each of its pixels fills a square.
/// \param size of the picture in physical pixels
/// \param area the part of the picture that was drawn; outside of it the result is empty
/// \param block width of the squares
Film enlarged(const Film& coarse, const PXR_NS::GfVec2i& size, const Tile& area, int block);

/// A coarse output in full size.
vesk::framework::hydra_renderer::AovBuffer enlarged(const vesk::framework::hydra_renderer::AovBuffer& coarse,
                                                    const PXR_NS::GfVec2i& size, int block);

} // namespace vesk::renderers::embree
