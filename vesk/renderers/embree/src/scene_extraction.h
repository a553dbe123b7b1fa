#pragma once

#include "geometry_cache.h"
#include "scene_snapshot.h"

#include <pxr/usd/usd/stage.h>

namespace vesk::renderers::embree {

/// Takes what is to be drawn from a stage: visible gprims of default purpose and of render or proxy purpose,
/// with their places, shapes, colours and materials, and the stage's lights. A prim that cannot be drawn is
/// left out. Logs: warn, one record for each of those, with its path and reason. Thread: one that may read
/// the stage.
std::shared_ptr<const SceneSnapshot> extractScene(const PXR_NS::UsdStageRefPtr& stage,
                                                  const ExtractionRequest& request, GeometryCache& cache);

/// Reads a camera of the stage in world space; nothing where the path names no camera.
/// Thread: one that may read the stage.
std::optional<PXR_NS::GfCamera> extractCamera(const PXR_NS::UsdStageRefPtr& stage,
                                              const PXR_NS::SdfPath& path, double time);

} // namespace vesk::renderers::embree
