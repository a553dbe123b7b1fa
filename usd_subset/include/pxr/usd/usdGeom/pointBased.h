#pragma once

#include <pxr/usd/usdGeom/gprim.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The base of geometry that is made of points.
class VESK_USD_API UsdGeomPointBased : public UsdGeomGprim
{
    VESK_USD_ABSTRACT_SCHEMA(UsdGeomPointBased, UsdGeomGprim)

    VESK_USD_SCHEMA_ATTR(Points, UsdGeomTokens->points)
    VESK_USD_SCHEMA_ATTR(Velocities, UsdGeomTokens->velocities)
    VESK_USD_SCHEMA_ATTR(Accelerations, UsdGeomTokens->accelerations)
    VESK_USD_SCHEMA_ATTR(Normals, UsdGeomTokens->normals)

    /// How normals are laid over the surface; vertex where nothing is authored.
    TfToken GetNormalsInterpolation() const;
    bool SetNormalsInterpolation(const TfToken& interpolation);

    static bool ComputeExtent(const VtVec3fArray& points, VtVec3fArray* extent);
    static bool ComputeExtent(const VtVec3fArray& points, const GfMatrix4d& transform, VtVec3fArray* extent);

    /// The points at a time, moved on from the samples at `baseTime` by their velocities where there are
    /// some.
    bool ComputePointsAtTime(VtArray<GfVec3f>* points, UsdTimeCode time, UsdTimeCode baseTime) const;
    bool ComputePointsAtTimes(std::vector<VtArray<GfVec3f>>* pointsArray,
                              const std::vector<UsdTimeCode>& times, UsdTimeCode baseTime) const;
    static bool ComputePointsAtTime(VtArray<GfVec3f>* points, UsdStageWeakPtr& stage, UsdTimeCode time,
                                    const VtVec3fArray& positions, const VtVec3fArray& velocities,
                                    UsdTimeCode velocitiesSampleTime, const VtVec3fArray& accelerations,
                                    float velocityScale = 1.0f);
};

PXR_NAMESPACE_CLOSE_SCOPE
