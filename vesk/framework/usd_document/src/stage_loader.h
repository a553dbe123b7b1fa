#pragma once

#include <string>

#include <pxr/pxr.h>
#include <pxr/usd/usd/stage.h>

#include <vesk/framework/usd_document/open_options.h>

namespace vesk::framework::usd_document {

/// Opens a scene file on the calling thread, step by step, with progress and cancellation between the steps.
/// Throws: DocumentException; nothing that was read stays behind then.
PXR_NS::UsdStageRefPtr loadStage(const std::string& path, const OpenOptions& options);

} // namespace vesk::framework::usd_document
