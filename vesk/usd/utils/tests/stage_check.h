#pragma once

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/stage.h>

#include <string>

namespace vesk::usd::utils::tests {

/// A stage in memory with that text behind the file's first line.
inline PXR_NS::UsdStageRefPtr stageFrom(const std::string& text)
{
    const PXR_NS::SdfLayerRefPtr layer = PXR_NS::SdfLayer::CreateAnonymous(".usda");
    if (!layer->ImportFromString("#usda 1.0\n" + text)) return PXR_NS::UsdStageRefPtr();
    return PXR_NS::UsdStage::Open(layer);
}

/// The text of the stage's root layer.
inline std::string rootText(const PXR_NS::UsdStageRefPtr& stage)
{
    std::string text;
    stage->GetRootLayer()->ExportToString(&text);
    return text;
}

} // namespace vesk::usd::utils::tests
