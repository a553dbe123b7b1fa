#pragma once

#include <vesk/renderers/hydra/export.h>

#include <string>
#include <vector>

namespace vesk::renderers::hydra {

/// The id of Storm, OpenUSD's own rasteriser: what an empty id means to a renderer of this library.
inline constexpr const char* kStormRendererId = "HdStormRendererPlugin";

/// The ids of the render delegates that the installed OpenUSD offers, Storm first.
/// Thread: any.
VESK_RENDERERS_HYDRA_EXPORT std::vector<std::string> hydraRendererIds();

/// Registers one renderer for each render delegate that the installed OpenUSD offers, under Hydra's plugin
/// ids. Calling it again changes nothing. No graphics context is made before the first picture.
///
///     vesk::renderers::hydra::registerHydraRenderers();
///     auto renderer = HydraRenderer::create(bus, document, hwContext, "HdStormRendererPlugin", {},
///                                           GfVec2i(1280, 720), 1, true, true, true, {}, {});
/// Thread: any.
VESK_RENDERERS_HYDRA_EXPORT void registerHydraRenderers();

} // namespace vesk::renderers::hydra
