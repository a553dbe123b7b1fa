#pragma once

#include <pxr/usd/usdLux/boundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A disk in the XY plane that emits along -Z.
class VESK_USD_API UsdLuxDiskLight : public UsdLuxBoundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxDiskLight, UsdLuxBoundableLightBase)

    VESK_USD_SCHEMA_ATTR(Radius, UsdLuxTokens->inputsRadius)
};

PXR_NAMESPACE_CLOSE_SCOPE
