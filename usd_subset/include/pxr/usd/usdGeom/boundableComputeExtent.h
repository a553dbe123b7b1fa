#pragma once

#include <pxr/usd/usdGeom/boundable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Computes the extent of one kind of prim, moved by `transform` where that is not null.
typedef bool (*UsdGeomComputeExtentFunction)(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                                             const GfMatrix4d* transform, VtVec3fArray* extent);

namespace Usd_BoundableExtent {

/// Registers the extent function of a schema type and of the types that derive from it without one of their
/// own.
VESK_USD_API void Register(const TfType& schemaType, UsdGeomComputeExtentFunction function);

} // namespace Usd_BoundableExtent

template <class PrimType>
void UsdGeomRegisterComputeExtentFunction(UsdGeomComputeExtentFunction function)
{
    Usd_BoundableExtent::Register(TfType::Find<PrimType>(), function);
}

PXR_NAMESPACE_CLOSE_SCOPE
