#pragma once

namespace vesk::apps {

/// Registers Hydra's render delegates where this build stands on an installed OpenUSD; the embedded one has none.
void registerInstalledHydraRenderers();

} // namespace vesk::apps
