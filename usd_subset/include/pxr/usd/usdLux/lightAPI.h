#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usd/collectionAPI.h>
#include <pxr/usd/usdLux/tokens.h>
#include <pxr/usd/usdShade/connectableAPI.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// What makes a prim a light; built into the light types, applicable to others.
class VESK_USD_API UsdLuxLightAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdLuxLightAPI, UsdAPISchemaBase)

    VESK_USD_SCHEMA_ATTR(ShaderId, UsdLuxTokens->lightShaderId)
    VESK_USD_SCHEMA_ATTR(MaterialSyncMode, UsdLuxTokens->lightMaterialSyncMode)
    VESK_USD_SCHEMA_ATTR(Intensity, UsdLuxTokens->inputsIntensity)
    VESK_USD_SCHEMA_ATTR(Exposure, UsdLuxTokens->inputsExposure)
    VESK_USD_SCHEMA_ATTR(Diffuse, UsdLuxTokens->inputsDiffuse)
    VESK_USD_SCHEMA_ATTR(Specular, UsdLuxTokens->inputsSpecular)
    VESK_USD_SCHEMA_ATTR(Normalize, UsdLuxTokens->inputsNormalize)
    VESK_USD_SCHEMA_ATTR(Color, UsdLuxTokens->inputsColor)
    VESK_USD_SCHEMA_ATTR(EnableColorTemperature, UsdLuxTokens->inputsEnableColorTemperature)
    VESK_USD_SCHEMA_ATTR(ColorTemperature, UsdLuxTokens->inputsColorTemperature)
    VESK_USD_SCHEMA_REL(Filters, UsdLuxTokens->lightFilters)

    explicit UsdLuxLightAPI(const UsdShadeConnectableAPI& connectable) : UsdLuxLightAPI(connectable.GetPrim())
    {}
    UsdShadeConnectableAPI ConnectableAPI() const { return UsdShadeConnectableAPI(GetPrim()); }
    UsdShadeInput GetInput(const TfToken& name) const { return ConnectableAPI().GetInput(name); }
    std::vector<UsdShadeInput> GetInputs(bool onlyAuthored = true) const
    {
        return ConnectableAPI().GetInputs(onlyAuthored);
    }

    /// The prims that the light reaches, and those that cast its shadows.
    UsdCollectionAPI GetLightLinkCollectionAPI() const;
    UsdCollectionAPI GetShadowLinkCollectionAPI() const;

    /// The attribute that names the light's shader for one render context, "<context>:light:shaderId".
    UsdAttribute GetShaderIdAttrForRenderContext(const TfToken& renderContext) const;
    UsdAttribute CreateShaderIdAttrForRenderContext(const TfToken& renderContext,
                                                    const VtValue& defaultValue = VtValue(),
                                                    bool writeSparsely = false) const;
    /// The shader's name for the first context that has one, else the general one.
    TfToken GetShaderId(const TfTokenVector& renderContexts) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
