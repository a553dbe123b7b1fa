#pragma once

#include <pxr/base/tf/staticTokens.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define USDSHADE_TOKENS                                                                                     \
    ((allPurpose, "")) (bindMaterialAs) (coordSys)                                                          \
    ((coordSys_MultipleApplyTemplate_Binding, "coordSys:__INSTANCE_NAME__:binding")) (displacement)         \
    (fallbackStrength) (full) (id) ((infoId, "info:id"))                                                    \
    ((infoImplementationSource, "info:implementationSource")) ((inputs, "inputs:")) (interfaceOnly)         \
    (materialBind) ((materialBinding, "material:binding"))                                                  \
    ((materialBindingCollection, "material:binding:collection")) (materialVariant)                          \
    ((outputs, "outputs:")) ((outputsDisplacement, "outputs:displacement"))                                 \
    ((outputsSurface, "outputs:surface")) ((outputsVolume, "outputs:volume")) (preview) (sdrMetadata)       \
    (sourceAsset) (sourceCode) (strongerThanDescendants) (subIdentifier) (surface)                          \
    ((universalRenderContext, "")) ((universalSourceType, "")) (volume) (weakerThanDescendants)             \
    (ConnectableAPI) (CoordSysAPI) (Material) (MaterialBindingAPI) (NodeDefAPI) (NodeGraph) (Shader)
// clang-format on

/// Names of the shading schemas, their properties and values.
TF_DECLARE_PUBLIC_TOKENS(UsdShadeTokens, VESK_USD_API, USDSHADE_TOKENS);
using UsdShadeTokensType = UsdShadeTokens_StaticTokenType;

PXR_NAMESPACE_CLOSE_SCOPE
