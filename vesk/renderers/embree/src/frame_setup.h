#pragma once

#include "document_scene.h"
#include "tile_tracer.h"

namespace vesk::renderers::embree {

/// Brings scene, settings and camera together.
/// Throws: `Exception` with one sentence for a camera without a usable view.
std::unique_ptr<FrameView> makeFrameView(const FrameSettings& settings, const PulledScene& pulled,
                                         const PXR_NS::GfCamera& camera);

} // namespace vesk::renderers::embree
