#pragma once

#include "observer.h"

#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>

#include <memory>

namespace vesk::cli::replay {

/// The id under which a session's renderer is registered.
inline constexpr const char* kObservedRendererId = "observed";

/// Registers a renderer that tells an observer of every operation and hands it on to a renderer of another
/// id. \param observer told on the calling thread, before the operation is handed on \param rendererId a
/// registered id; empty: the default
void registerObservedRenderer(std::shared_ptr<Observer> observer, const std::string& rendererId);

} // namespace vesk::cli::replay
