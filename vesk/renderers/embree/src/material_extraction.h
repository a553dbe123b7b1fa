#pragma once

#include "scene_snapshot.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

namespace vesk::renderers::embree {

/// Reads the constant inputs of a material's `UsdPreviewSurface`; nothing where it has none.
std::optional<Material> readMaterial(const PXR_NS::UsdPrim& material, PXR_NS::UsdTimeCode time);

} // namespace vesk::renderers::embree
