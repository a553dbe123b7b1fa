#pragma once

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/resolverContext.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerOffset.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Moves the times in a value (time codes, arrays of them, samples, dictionaries with them); others stay.
void Usd_ApplyLayerOffset(const SdfLayerOffset& offset, VtValue* value);

/// Fills in where the asset paths in a value lead, seen from the layer that holds them and with the stage's
/// context; other values stay.
void Usd_ResolveAssetPaths(const SdfLayerHandle& layer, const ArResolverContext& context, VtValue* value);

PXR_NAMESPACE_CLOSE_SCOPE
