#pragma once

#include "material.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <optional>

namespace vesk::renderers::embree {

/// Reads a material's `UsdPreviewSurface` with what feeds its inputs: values, also through the interface of
/// materials and node graphs, `UsdUVTexture`, `UsdTransform2d` and `UsdPrimvarReader`s. Nothing where it has
/// none. Thread: one that may read the stage.
std::optional<Material> readMaterial(const PXR_NS::UsdPrim& material, PXR_NS::UsdTimeCode time,
                                     TextureStore& textures);

} // namespace vesk::renderers::embree
