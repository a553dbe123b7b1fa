#include <apps/support/renderers.h>

#include "hydra_renderers.h"

#include <vesk/renderers/embree/embree_renderer.h>
#include <vesk/renderers/recording/recording_renderer.h>

namespace vesk::apps {

void registerRenderers()
{
    renderers::embree::registerEmbreeRenderer();
    registerInstalledHydraRenderers();
    renderers::recording::registerRecordingRenderer();
}

} // namespace vesk::apps
