#pragma once

namespace vesk::apps {

/// Registers the renderers that this build has, the default (Embree) first. Calling it again changes nothing.
void registerRenderers();

} // namespace vesk::apps
