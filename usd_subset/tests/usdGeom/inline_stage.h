#pragma once

#include "../on_lines.h"

#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/stage.h>

#include <gtest/gtest.h>

#include <string>

PXR_NAMESPACE_USING_DIRECTIVE

/// A stage on a layer that holds the text, which stands below the usual first line.
inline UsdStageRefPtr StageOf(const std::string& text)
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    EXPECT_TRUE(layer->ImportFromString("#usda 1.0\n" + onLines(text)));
    return UsdStage::Open(layer);
}

inline UsdPrim PrimAt(const UsdStageRefPtr& stage, const char* path)
{
    return stage->GetPrimAtPath(SdfPath(path));
}
