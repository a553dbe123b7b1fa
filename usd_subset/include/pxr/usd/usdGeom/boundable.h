#pragma once

#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usdGeom/xformable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// A prim with an extent: the corners of its box in its own space, without its transform.
class VESK_USD_API UsdGeomBoundable : public UsdGeomXformable
{
    VESK_USD_ABSTRACT_SCHEMA(UsdGeomBoundable, UsdGeomXformable)

    VESK_USD_SCHEMA_ATTR(Extent, UsdGeomTokens->extent)

    /// The authored extent where it is usable, else what the extent function of the prim's type answers.
    bool ComputeExtent(const UsdTimeCode& time, VtVec3fArray* extent) const;
    static bool ComputeExtentFromPlugins(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                                         VtVec3fArray* extent);
    /// The same for the geometry moved by a matrix, which may be tighter than the moved box.
    static bool ComputeExtentFromPlugins(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                                         const GfMatrix4d& transform, VtVec3fArray* extent);
};

PXR_NAMESPACE_CLOSE_SCOPE
