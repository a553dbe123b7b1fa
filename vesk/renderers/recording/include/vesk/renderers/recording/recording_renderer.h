#pragma once

#include <vesk/renderers/recording/export.h>
#include <vesk/renderers/recording/recording_log.h>

#include <memory>

namespace vesk::renderers::recording {

/// The id of the recording renderer.
inline constexpr const char* kRendererId = "recording";

/// Registers the renderer that draws nothing and remembers every call, under `kRendererId`.
/// \param log where its renderers record; null: a log of its own for each
/// Registering again replaces the log for the renderers that are made from then on. Thread: any.
VESK_RENDERERS_RECORDING_EXPORT void registerRecordingRenderer(std::shared_ptr<RecordingLog> log = nullptr);

} // namespace vesk::renderers::recording
