#pragma once

#include <pxr/usd/usdLux/nonboundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Light from all around, its pole along an axis of its own choice.
class VESK_USD_API UsdLuxDomeLight_1 : public UsdLuxNonboundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxDomeLight_1, UsdLuxNonboundableLightBase)

    VESK_USD_SCHEMA_ATTR(TextureFile, UsdLuxTokens->inputsTextureFile)
    VESK_USD_SCHEMA_ATTR(TextureFormat, UsdLuxTokens->inputsTextureFormat)
    VESK_USD_SCHEMA_ATTR(GuideRadius, UsdLuxTokens->guideRadius)
    VESK_USD_SCHEMA_ATTR(PoleAxis, UsdLuxTokens->poleAxis)
    VESK_USD_SCHEMA_REL(Portals, UsdLuxTokens->portals)
};

PXR_NAMESPACE_CLOSE_SCOPE
