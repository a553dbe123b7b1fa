#pragma once

#include "bare_rays.h"
#include "document_scene.h"
#include "stage_mirror.h"
#include "tile_tracer.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>

#include <memory>
#include <string>

namespace vesk::renderers::embree::bench {

/// The side of the sheet that has 10^6 triangles.
inline constexpr int kMillionSide = 707;

/// A stage in memory with one mesh: a wavy sheet of `side` x `side` quads in the plane z = 0, 2 units wide.
PXR_NS::UsdStageRefPtr makeSheet(int side);

/// A stage with many small meshes, each with a place of its own.
PXR_NS::UsdStageRefPtr makeManyMeshes(int count);

/// A stage with one mesh and a point instancer that copies it.
PXR_NS::UsdStageRefPtr makeCopies(int count);

/// The settings of a picture of 1280 x 720 pixels without helpers.
FrameSettings makeSettings();

/// An orthographic camera on +z that shows `width` units across.
PXR_NS::GfCamera makeCamera(double width);

/// A view of a stage, built and ready for tracing.
std::unique_ptr<FrameView> makeView(const PXR_NS::UsdStageRefPtr& stage, const FrameSettings& settings,
                                    double width);

} // namespace vesk::renderers::embree::bench
