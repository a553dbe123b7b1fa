#pragma once

#include <pxr/pxr.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Makes an anonymous layer that declares the attributes which have samples in clips.
/// @param clips layers; a null one is an error
/// @param clipPath the prim in each clip; attributes of it and below it count
/// @param tag the end of the layer's name
/// @param activeTimes when each clip becomes active, in the clips' order: where a clip has no samples of an
/// attribute, a block is written at that time; null for none
/// Returns: null, with an error, when the path is no prim's or a layer is null.
SdfLayerRefPtr Usd_GenerateClipManifest(const SdfLayerHandleVector& clips, const SdfPath& clipPath,
                                        const std::string& tag, const std::vector<double>* activeTimes);

PXR_NAMESPACE_CLOSE_SCOPE
