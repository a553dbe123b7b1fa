#pragma once

#include <pxr/usd/usdLux/boundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A cylinder along X that emits outwards, without caps.
class VESK_USD_API UsdLuxCylinderLight : public UsdLuxBoundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxCylinderLight, UsdLuxBoundableLightBase)

    VESK_USD_SCHEMA_ATTR(Length, UsdLuxTokens->inputsLength)
    VESK_USD_SCHEMA_ATTR(Radius, UsdLuxTokens->inputsRadius)
    VESK_USD_SCHEMA_ATTR(TreatAsLine, UsdLuxTokens->treatAsLine)
};

PXR_NAMESPACE_CLOSE_SCOPE
