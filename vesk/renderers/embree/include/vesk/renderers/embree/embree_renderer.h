#pragma once

#include <vesk/renderers/embree/export.h>

namespace vesk::renderers::embree {

/// The id of the CPU renderer.
inline constexpr const char* kRendererId = "embree";

/// Registers the CPU renderer under `kRendererId`. Calling it again changes nothing.
///
///     vesk::renderers::embree::registerEmbreeRenderer();
///     auto renderer = HydraRenderer::create(bus, document, nullptr, "embree", {}, GfVec2i(1280, 720), 1,
///                                           true, true, true, {}, {});
/// Thread: any.
VESK_RENDERERS_EMBREE_EXPORT void registerEmbreeRenderer();

} // namespace vesk::renderers::embree
