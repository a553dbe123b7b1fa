#pragma once

#include "inherited_state.h"

namespace vesk::renderers::embree {

/// Takes up the material that a prim binds directly, unless one from above is stronger; of its bindings the
/// one for previews before the general one. Notes bindings by collection.
void applyMaterialBinding(const PXR_NS::UsdPrim& prim, InheritedState& state);

/// The material of a prim: the inherited one, or what its collections say where there are any.
PXR_NS::SdfPath materialOf(const PXR_NS::UsdPrim& prim, const InheritedState& state);

} // namespace vesk::renderers::embree
