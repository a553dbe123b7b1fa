#pragma once

#include <pxr/usd/usdLux/boundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A sphere that emits outwards.
class VESK_USD_API UsdLuxSphereLight : public UsdLuxBoundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxSphereLight, UsdLuxBoundableLightBase)

    VESK_USD_SCHEMA_ATTR(Radius, UsdLuxTokens->inputsRadius)
    VESK_USD_SCHEMA_ATTR(TreatAsPoint, UsdLuxTokens->treatAsPoint)
};

PXR_NAMESPACE_CLOSE_SCOPE
