#pragma once

#include "tile_tracer.h"

#include <cstddef>
#include <vector>

namespace vesk::renderers::embree::bench {

/// A view ray as Embree's single rays and streams take it.
RTCRayHit toBareRay(const ViewRay& ray);

/// Makes the rays through the pixels' centres of a tile and intersects them in packets of sixteen. Nothing is
/// kept but the number of hits, which is returned.
std::size_t traceBarePackets(const FrameView& view, const Tile& tile);

/// The same with one ray stream. \param rays memory that is used again
std::size_t traceBareStream(const FrameView& view, const Tile& tile, std::vector<RTCRayHit>& rays);

} // namespace vesk::renderers::embree::bench
