#pragma once

#include <pxr/usd/usdLux/boundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A rectangle in the XY plane that emits along -Z.
class VESK_USD_API UsdLuxRectLight : public UsdLuxBoundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxRectLight, UsdLuxBoundableLightBase)

    VESK_USD_SCHEMA_ATTR(Width, UsdLuxTokens->inputsWidth)
    VESK_USD_SCHEMA_ATTR(Height, UsdLuxTokens->inputsHeight)
    VESK_USD_SCHEMA_ATTR(TextureFile, UsdLuxTokens->inputsTextureFile)
};

PXR_NAMESPACE_CLOSE_SCOPE
