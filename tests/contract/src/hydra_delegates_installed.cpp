#include "hydra_delegates.h"

#include <vesk/renderers/hydra/hydra_renderers.h>

namespace vesk::tests::contract {

std::vector<std::string> registerHydraDelegates()
{
    renderers::hydra::registerHydraRenderers();
    return renderers::hydra::hydraRendererIds();
}

} // namespace vesk::tests::contract
