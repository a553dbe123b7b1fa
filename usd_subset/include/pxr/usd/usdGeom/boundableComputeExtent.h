#pragma once

#include <pxr/base/tf/type.h>
#include <pxr/usd/usdGeom/boundable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Computes the extent of one kind of prim, moved by `transform` where that is not null.
using UsdGeomComputeExtentFunction = bool (*)(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                                              const GfMatrix4d* transform, VtVec3fArray* extent);

/// Registers the extent function of a schema type and of the types that derive from it without one of their
/// own. Thread: any.
VESK_USD_API void UsdGeomRegisterComputeExtentFunction(const TfType& primType,
                                                       const UsdGeomComputeExtentFunction& fn);

template <class PrimType>
void UsdGeomRegisterComputeExtentFunction(const UsdGeomComputeExtentFunction fn)
{
    UsdGeomRegisterComputeExtentFunction(TfType::Find<PrimType>(), fn);
}

PXR_NAMESPACE_CLOSE_SCOPE
