#pragma once

#include <pxr/usd/usdLux/nonboundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Light from all around, its pole along Y.
class VESK_USD_API UsdLuxDomeLight : public UsdLuxNonboundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxDomeLight, UsdLuxNonboundableLightBase)

    VESK_USD_SCHEMA_ATTR(TextureFile, UsdLuxTokens->inputsTextureFile)
    VESK_USD_SCHEMA_ATTR(TextureFormat, UsdLuxTokens->inputsTextureFormat)
    VESK_USD_SCHEMA_ATTR(GuideRadius, UsdLuxTokens->guideRadius)
    VESK_USD_SCHEMA_REL(Portals, UsdLuxTokens->portals)

    /// Adds a rotation op that turns the pole to the stage's up axis where that is Z.
    void OrientToStageUpAxis() const;
};

PXR_NAMESPACE_CLOSE_SCOPE
