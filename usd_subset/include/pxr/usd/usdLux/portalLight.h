#pragma once

#include <pxr/usd/usdLux/boundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A rectangle in the XY plane through which dome light is sampled.
class VESK_USD_API UsdLuxPortalLight : public UsdLuxBoundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxPortalLight, UsdLuxBoundableLightBase)

    VESK_USD_SCHEMA_ATTR(Width, UsdLuxTokens->inputsWidth)
    VESK_USD_SCHEMA_ATTR(Height, UsdLuxTokens->inputsHeight)
};

PXR_NAMESPACE_CLOSE_SCOPE
