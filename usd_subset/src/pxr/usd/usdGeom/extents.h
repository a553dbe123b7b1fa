#pragma once

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Writes a box as an extent.
inline void UsdGeom_SetExtent(const GfVec3f& min, const GfVec3f& max, VtVec3fArray* extent)
{
    extent->resize(2);
    (*extent)[0] = min;
    (*extent)[1] = max;
}

/// Writes the extent of the box from -max to max, moved by a matrix where that is not null.
void UsdGeom_SetSymmetricExtent(const GfVec3d& max, const GfMatrix4d* transform, VtVec3fArray* extent);

/// Half the size of the box around something of this length along an axis and radius across; false where the
/// axis is none of X, Y and Z.
bool UsdGeom_ComputeAxialMax(double halfLength, double radius, const TfToken& axis, GfVec3f* max);

PXR_NAMESPACE_CLOSE_SCOPE
