#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdLux/tokens.h>
#include <pxr/usd/usdShade/input.h>
#include <pxr/usd/usdShade/output.h>

PXR_NAMESPACE_OPEN_SCOPE

/// How a light's shadows look.
class VESK_USD_API UsdLuxShadowAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdLuxShadowAPI, UsdAPISchemaBase)

    VESK_USD_SCHEMA_ATTR(ShadowEnable, UsdLuxTokens->inputsShadowEnable)
    VESK_USD_SCHEMA_ATTR(ShadowColor, UsdLuxTokens->inputsShadowColor)
    VESK_USD_SCHEMA_ATTR(ShadowDistance, UsdLuxTokens->inputsShadowDistance)
    VESK_USD_SCHEMA_ATTR(ShadowFalloff, UsdLuxTokens->inputsShadowFalloff)
    VESK_USD_SCHEMA_ATTR(ShadowFalloffGamma, UsdLuxTokens->inputsShadowFalloffGamma)
};

PXR_NAMESPACE_CLOSE_SCOPE
