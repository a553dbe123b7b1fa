#pragma once

#include "scene_snapshot.h"

#include <pxr/base/tf/token.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <optional>

namespace vesk::renderers::embree {

/// The draw mode that stands for a model and all below it (`cards`, `bounds`, `origin`); empty where the prim
/// is drawn as it is. A mode is applied to components and where `model:applyDrawMode` says so, as OpenUSD's
/// imaging does.
PXR_NS::TfToken appliedDrawMode(const PXR_NS::UsdPrim& prim);

/// What is drawn in the place of a model: cards with pictures, the edges of its box, or the axes of its
/// space. Nothing for a model without bounds. \param mode as `appliedDrawMode` says
std::optional<SceneItem> readStandIn(const PXR_NS::UsdPrim& prim, const PXR_NS::TfToken& mode,
                                     PXR_NS::UsdTimeCode time, TextureStore& textures);

} // namespace vesk::renderers::embree
