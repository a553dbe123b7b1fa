#pragma once

#include <pxr/usd/usdGeom/xformable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A group with a transform.
class VESK_USD_API UsdGeomXform : public UsdGeomXformable
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomXform, UsdGeomXformable)
};

PXR_NAMESPACE_CLOSE_SCOPE
