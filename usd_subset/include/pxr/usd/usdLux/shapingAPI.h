#pragma once

#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdLux/tokens.h>
#include <pxr/usd/usdShade/input.h>
#include <pxr/usd/usdShade/output.h>

PXR_NAMESPACE_OPEN_SCOPE

/// How a light's emission depends on direction. Angles are degrees.
class VESK_USD_API UsdLuxShapingAPI : public UsdAPISchemaBase
{
    VESK_USD_APPLIED_SCHEMA(UsdLuxShapingAPI, UsdAPISchemaBase)

    VESK_USD_SCHEMA_ATTR(ShapingFocus, UsdLuxTokens->inputsShapingFocus)
    VESK_USD_SCHEMA_ATTR(ShapingFocusTint, UsdLuxTokens->inputsShapingFocusTint)
    VESK_USD_SCHEMA_ATTR(ShapingConeAngle, UsdLuxTokens->inputsShapingConeAngle)
    VESK_USD_SCHEMA_ATTR(ShapingConeSoftness, UsdLuxTokens->inputsShapingConeSoftness)
    VESK_USD_SCHEMA_ATTR(ShapingIesFile, UsdLuxTokens->inputsShapingIesFile)
    VESK_USD_SCHEMA_ATTR(ShapingIesAngleScale, UsdLuxTokens->inputsShapingIesAngleScale)
    VESK_USD_SCHEMA_ATTR(ShapingIesNormalize, UsdLuxTokens->inputsShapingIesNormalize)
};

PXR_NAMESPACE_CLOSE_SCOPE
