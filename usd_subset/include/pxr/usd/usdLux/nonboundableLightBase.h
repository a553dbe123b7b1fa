#pragma once

#include <pxr/usd/usdGeom/xformable.h>
#include <pxr/usd/usdLux/lightAccessors.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of lights without an extent.
class VESK_USD_API UsdLuxNonboundableLightBase : public UsdGeomXformable
{
    VESK_USD_ABSTRACT_SCHEMA(UsdLuxNonboundableLightBase, UsdGeomXformable)

    VESK_USD_LIGHT_ACCESSORS
};

PXR_NAMESPACE_CLOSE_SCOPE
