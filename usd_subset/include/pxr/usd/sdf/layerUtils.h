#pragma once

/// Asset paths as seen from a layer.

#include <pxr/pxr.h>
#include <pxr/usd/ar/resolvedPath.h>
#include <pxr/usd/sdf/api.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layer.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the identifier of an asset that is written relative to the layer; anonymous identifiers and
/// absolute paths stay as they are. An empty path or a null layer is an error.
SDF_API std::string SdfComputeAssetPathRelativeToLayer(const SdfLayerHandle& anchor,
                                                       const std::string& assetPath);
/// Does the same and resolves the result; empty where nothing lies there.
SDF_API ArResolvedPath SdfResolveAssetPathRelativeToLayer(const SdfLayerHandle& anchor,
                                                          const std::string& assetPath);

PXR_NAMESPACE_CLOSE_SCOPE
