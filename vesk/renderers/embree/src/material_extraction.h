#pragma once

#include "scene_snapshot.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

namespace vesk::renderers::embree {

/// The material that is bound to a prim: its own binding, or the one that it inherits.
/// \param inherited the binding of its parent
/// \param inheritedIsStronger whether that one overrides bindings below it; updated for the prim's children
PXR_NS::SdfPath boundMaterial(const PXR_NS::UsdPrim& prim, const PXR_NS::SdfPath& inherited,
                              bool& inheritedIsStronger);

/// Reads the constant inputs of a material's `UsdPreviewSurface`; nothing where it has none.
std::optional<Material> readMaterial(const PXR_NS::UsdPrim& material, PXR_NS::UsdTimeCode time);

} // namespace vesk::renderers::embree
