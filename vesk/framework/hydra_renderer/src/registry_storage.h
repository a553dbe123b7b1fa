#pragma once

#include <vesk/framework/hydra_renderer/renderer_registry.h>

namespace vesk::framework::hydra_renderer {

/// Returns a copy of the factory of a registered id.
/// Throws: `Exception` that names the known ids for an unknown one.
RendererFactory registeredFactory(const std::string& id);

} // namespace vesk::framework::hydra_renderer
