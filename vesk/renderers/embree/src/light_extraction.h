#pragma once

#include "scene_snapshot.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

namespace vesk::renderers::embree {

/// Reads a light of the stage (DistantLight, SphereLight, DiskLight, RectLight, CylinderLight, DomeLight)
/// with its texture and shaping cone; nothing where the prim is none.
std::optional<StageLight> readStageLight(const PXR_NS::UsdPrim& prim, const PXR_NS::GfMatrix4d& toWorld,
                                         PXR_NS::UsdTimeCode time, TextureStore& textures);

} // namespace vesk::renderers::embree
