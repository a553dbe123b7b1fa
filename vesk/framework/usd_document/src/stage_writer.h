#pragma once

#include <string>

#include <pxr/pxr.h>
#include <pxr/usd/usd/stage.h>

namespace vesk::framework::usd_document {

/// Writes all changed layers of the stage that have a file. Throws: DocumentException FileNotWritable, naming
/// the first layer that could not be written; the others are written all the same.
void saveStage(const PXR_NS::UsdStageRefPtr& stage);

/// Writes the root layer to another file: aside first, then in one step to its name. Throws:
/// DocumentException FileNotWritable or UnknownFormat; the file is then as it was.
void writeRootLayer(const PXR_NS::UsdStageRefPtr& stage, const std::string& path);

} // namespace vesk::framework::usd_document
