#pragma once

#include <pxr/base/tf/staticTokens.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define USDLUX_TOKENS                                                                                       \
    (angular) (automatic) ((collectionFilterLinkIncludeRoot, "collection:filterLink:includeRoot"))          \
    ((collectionLightLinkIncludeRoot, "collection:lightLink:includeRoot"))                                  \
    ((collectionShadowLinkIncludeRoot, "collection:shadowLink:includeRoot")) (consumeAndContinue)           \
    (consumeAndHalt) (cubeMapVerticalCross) (filterLink) (geometry) (guideRadius) (ignore) (independent)    \
    ((inputsAngle, "inputs:angle")) ((inputsColor, "inputs:color"))                                         \
    ((inputsColorTemperature, "inputs:colorTemperature")) ((inputsDiffuse, "inputs:diffuse"))               \
    ((inputsEnableColorTemperature, "inputs:enableColorTemperature"))                                       \
    ((inputsExposure, "inputs:exposure")) ((inputsHeight, "inputs:height"))                                 \
    ((inputsIntensity, "inputs:intensity")) ((inputsLength, "inputs:length"))                               \
    ((inputsNormalize, "inputs:normalize")) ((inputsRadius, "inputs:radius"))                               \
    ((inputsShadowColor, "inputs:shadow:color")) ((inputsShadowDistance, "inputs:shadow:distance"))         \
    ((inputsShadowEnable, "inputs:shadow:enable")) ((inputsShadowFalloff, "inputs:shadow:falloff"))         \
    ((inputsShadowFalloffGamma, "inputs:shadow:falloffGamma"))                                              \
    ((inputsShapingConeAngle, "inputs:shaping:cone:angle"))                                                 \
    ((inputsShapingConeSoftness, "inputs:shaping:cone:softness"))                                           \
    ((inputsShapingFocus, "inputs:shaping:focus"))                                                          \
    ((inputsShapingFocusTint, "inputs:shaping:focusTint"))                                                  \
    ((inputsShapingIesAngleScale, "inputs:shaping:ies:angleScale"))                                         \
    ((inputsShapingIesFile, "inputs:shaping:ies:file"))                                                     \
    ((inputsShapingIesNormalize, "inputs:shaping:ies:normalize")) ((inputsSpecular, "inputs:specular"))     \
    ((inputsTextureFile, "inputs:texture:file")) ((inputsTextureFormat, "inputs:texture:format"))           \
    ((inputsWidth, "inputs:width")) (latlong) ((lightFilters, "light:filters"))                             \
    ((lightFilterShaderId, "lightFilter:shaderId")) (lightLink) (lightList)                                 \
    ((lightListCacheBehavior, "lightList:cacheBehavior"))                                                   \
    ((lightMaterialSyncMode, "light:materialSyncMode")) ((lightShaderId, "light:shaderId"))                 \
    (materialGlowTintsLight) (MeshLight) (mirroredBall) (noMaterialResponse) (orientToStageUpAxis)          \
    (poleAxis) (portals) (scene) (shadowLink) (treatAsLine) (treatAsPoint) (VolumeLight) (Y) (Z)            \
    (BoundableLightBase) (CylinderLight) (DiskLight) (DistantLight) (DomeLight) (DomeLight_1)               \
    (GeometryLight) (LightAPI) (LightFilter) (LightListAPI) (ListAPI) (MeshLightAPI)                        \
    (NonboundableLightBase) (PluginLight) (PluginLightFilter) (PortalLight) (RectLight) (ShadowAPI)         \
    (ShapingAPI) (SphereLight) (VolumeLightAPI)
// clang-format on

/// Names of the light schemas, their properties and values.
TF_DECLARE_PUBLIC_TOKENS(UsdLuxTokens, VESK_USD_API, USDLUX_TOKENS);
using UsdLuxTokensType = UsdLuxTokens_StaticTokenType;

PXR_NAMESPACE_CLOSE_SCOPE
