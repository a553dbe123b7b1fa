#include "hydra_renderers.h"

namespace vesk::apps {

void registerInstalledHydraRenderers() {}

} // namespace vesk::apps
