#include "hydra_renderers.h"

#include <vesk/renderers/hydra/hydra_renderers.h>

namespace vesk::apps {

void registerInstalledHydraRenderers() { renderers::hydra::registerHydraRenderers(); }

} // namespace vesk::apps
