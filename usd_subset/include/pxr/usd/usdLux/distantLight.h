#pragma once

#include <pxr/usd/usdLux/nonboundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Light from far away along -Z, from a disk of an angle in degrees.
class VESK_USD_API UsdLuxDistantLight : public UsdLuxNonboundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxDistantLight, UsdLuxNonboundableLightBase)

    VESK_USD_SCHEMA_ATTR(Angle, UsdLuxTokens->inputsAngle)
};

PXR_NAMESPACE_CLOSE_SCOPE
