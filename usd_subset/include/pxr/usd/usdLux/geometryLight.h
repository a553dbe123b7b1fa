#pragma once

#include <pxr/usd/usdLux/nonboundableLightBase.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Light from the surface of other geometry.
class VESK_USD_API UsdLuxGeometryLight : public UsdLuxNonboundableLightBase
{
    VESK_USD_CONCRETE_SCHEMA(UsdLuxGeometryLight, UsdLuxNonboundableLightBase)

    VESK_USD_SCHEMA_REL(Geometry, UsdLuxTokens->geometry)
};

PXR_NAMESPACE_CLOSE_SCOPE
