#pragma once

#include <pxr/usd/usdGeom/boundable.h>
#include <pxr/usd/usdLux/lightAccessors.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of lights that have an extent.
class VESK_USD_API UsdLuxBoundableLightBase : public UsdGeomBoundable
{
    VESK_USD_ABSTRACT_SCHEMA(UsdLuxBoundableLightBase, UsdGeomBoundable)

    VESK_USD_LIGHT_ACCESSORS
};

PXR_NAMESPACE_CLOSE_SCOPE
