#pragma once

#include "drawing.h"
#include "renderer_core.h"
#include "tile_tracer.h"

#include <vesk/framework/hydra_renderer/picking_result.h>

namespace vesk::renderers::embree {

/// Finds the hit nearest to a position of the picture, in pixels, and of equally near ones the one nearest to
/// the viewer. Looked at are the position itself and the centres of the pixels within the radius. \param
/// x,y,radius physical pixels; a position outside the picture or not finite is a miss
framework::hydra_renderer::PickingResult pickAt(const FrameView& view, float x, float y, float radius);

/// Reads an output at one pixel, as a picture of these settings shows it without outlines.
PXR_NS::GfVec4f readOutputAt(const FrameView& view, Output output, float x, float y);

/// Starts a pick and returns its future.
base::Future<framework::hydra_renderer::PickingResult> startPick(const std::shared_ptr<RendererCore>& core,
                                                                 float x, float y, float radius);

/// Starts reading an output at one pixel. Future errors: an unknown output, a position outside the picture.
base::Future<PXR_NS::GfVec4f> startColorPick(const std::shared_ptr<RendererCore>& core, float x, float y,
                                             const PXR_NS::TfToken& aov);

} // namespace vesk::renderers::embree
