#pragma once

#include <pxr/usd/usd/variantSets.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/subset.h>
#include <pxr/usd/usdShade/nodeGraph.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// How things look: shaders for surface, displacement and volume, for all renderers or by render context.
class VESK_USD_API UsdShadeMaterial : public UsdShadeNodeGraph
{
    VESK_USD_CONCRETE_SCHEMA(UsdShadeMaterial, UsdShadeNodeGraph)

    VESK_USD_SCHEMA_ATTR(Surface, UsdShadeTokens->outputsSurface)
    VESK_USD_SCHEMA_ATTR(Displacement, UsdShadeTokens->outputsDisplacement)
    VESK_USD_SCHEMA_ATTR(Volume, UsdShadeTokens->outputsVolume)

    // Each terminal: its outputs, and the shader of the first of the contexts that has one, or of all
    // renderers.
    UsdShadeOutput
    CreateSurfaceOutput(const TfToken& renderContext = UsdShadeTokens->universalRenderContext) const;
    UsdShadeOutput
    GetSurfaceOutput(const TfToken& renderContext = UsdShadeTokens->universalRenderContext) const;
    std::vector<UsdShadeOutput> GetSurfaceOutputs() const;
    UsdShadeShader
    ComputeSurfaceSource(const TfTokenVector& contextVector = {UsdShadeTokens->universalRenderContext},
                         TfToken* sourceName = nullptr, UsdShadeAttributeType* sourceType = nullptr) const;
    UsdShadeShader ComputeSurfaceSource(const TfToken& renderContext, TfToken* sourceName = nullptr,
                                        UsdShadeAttributeType* sourceType = nullptr) const;

    UsdShadeOutput
    CreateDisplacementOutput(const TfToken& renderContext = UsdShadeTokens->universalRenderContext) const;
    UsdShadeOutput
    GetDisplacementOutput(const TfToken& renderContext = UsdShadeTokens->universalRenderContext) const;
    std::vector<UsdShadeOutput> GetDisplacementOutputs() const;
    UsdShadeShader
    ComputeDisplacementSource(const TfTokenVector& contextVector = {UsdShadeTokens->universalRenderContext},
                              TfToken* sourceName = nullptr,
                              UsdShadeAttributeType* sourceType = nullptr) const;
    UsdShadeShader ComputeDisplacementSource(const TfToken& renderContext, TfToken* sourceName = nullptr,
                                             UsdShadeAttributeType* sourceType = nullptr) const;

    UsdShadeOutput
    CreateVolumeOutput(const TfToken& renderContext = UsdShadeTokens->universalRenderContext) const;
    UsdShadeOutput
    GetVolumeOutput(const TfToken& renderContext = UsdShadeTokens->universalRenderContext) const;
    std::vector<UsdShadeOutput> GetVolumeOutputs() const;
    UsdShadeShader
    ComputeVolumeSource(const TfTokenVector& contextVector = {UsdShadeTokens->universalRenderContext},
                        TfToken* sourceName = nullptr, UsdShadeAttributeType* sourceType = nullptr) const;
    UsdShadeShader ComputeVolumeSource(const TfToken& renderContext, TfToken* sourceName = nullptr,
                                       UsdShadeAttributeType* sourceType = nullptr) const;

private:
    UsdShadeOutput _CreateTerminal(const TfToken& renderContext, const TfToken& terminal) const;
    UsdShadeOutput _GetTerminal(const TfToken& renderContext, const TfToken& terminal) const;
    std::vector<UsdShadeOutput> _GetTerminals(const TfToken& terminal) const;
    UsdShadeShader _ComputeSource(const TfToken& terminal, const TfTokenVector& contextVector,
                                  TfToken* sourceName, UsdShadeAttributeType* sourceType) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
