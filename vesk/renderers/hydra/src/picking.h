#pragma once

#include "renderer_core.h"

#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/picking_result.h>

namespace vesk::renderers::hydra {

/// Begins a pick; see `HydraRenderer::singlePointPicking`.
base::Future<framework::hydra_renderer::PickingResult> startPick(const std::shared_ptr<RendererCore>& core,
                                                                 float x, float y, float radius);

/// Begins to read one pixel; see `HydraRenderer::colorPicking`.
base::Future<PXR_NS::GfVec4f> startColorPick(const std::shared_ptr<RendererCore>& core, float x, float y,
                                             const PXR_NS::TfToken& aov);

} // namespace vesk::renderers::hydra
