#pragma once

#include "pxr/usd/usd/layerStack.h"

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/ar/resolverContext.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerOffset.h>

#include <functional>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Moves the times in a value (time codes, arrays of them, samples, dictionaries with them); others stay.
void Usd_ApplyLayerOffset(const SdfLayerOffset& offset, VtValue* value);

/// The text that an expression in a value stands for; itself, with a warning, when it cannot be evaluated.
std::string Usd_EvaluateExpression(const Usd_LayerStack& layerStack, const std::string& text,
                                   const SdfLayer& layer, const SdfPath& path);

/// Fills in where the asset paths in a value lead, seen from the layer that holds them and with the stage's
/// context; other values stay.
/// @param evaluate gives the text that an expression stands for
void Usd_ResolveAssetPaths(const SdfLayerHandle& layer, const ArResolverContext& context,
                           const std::function<std::string(const std::string&)>& evaluate, VtValue* value);

PXR_NAMESPACE_CLOSE_SCOPE
