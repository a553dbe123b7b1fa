#pragma once

#include "pxr/usd/usd/layerStack.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>

#include <optional>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndex;

/// What the layers say of one set of clips, composed. Times are the stage's.
struct Usd_ClipSetDefinition
{
    std::string name;
    std::optional<VtArray<SdfAssetPath>> assetPaths; ///< written, or as the template's files were found
    std::optional<SdfAssetPath> manifestAssetPath;
    SdfLayerRefPtr generatedManifest; ///< to be used where none is written; null to generate one
    std::optional<std::string> primPath;
    std::optional<VtVec2dArray> active;
    std::optional<VtVec2dArray> times;
    std::optional<bool> interpolateMissingClipValues;

    // The strongest place that names asset paths; the values of clips are as strong as it.
    const Usd_LayerStack* layerStack = nullptr; ///< kept alive by the index
    SdfPath sourcePath;
    SdfLayerRefPtr sourceLayer;
};

/// The sets of clips that are written on a prim, the strongest first where several stand at one place.
/// Logs: a warning for each entry that is no set, and for templates that make no sense.
std::vector<Usd_ClipSetDefinition> Usd_ComputeClipSetDefinitions(const Usd_PrimIndex& index);

PXR_NAMESPACE_CLOSE_SCOPE
