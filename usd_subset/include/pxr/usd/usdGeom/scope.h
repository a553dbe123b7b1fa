#pragma once

#include <pxr/usd/usdGeom/imageable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A group without a transform.
class VESK_USD_API UsdGeomScope : public UsdGeomImageable
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomScope, UsdGeomImageable)
};

PXR_NAMESPACE_CLOSE_SCOPE
