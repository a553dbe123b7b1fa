#include "pxr/usd/usdGeom/samplingUtils.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/curves.h>
#include <pxr/usd/usdGeom/mesh.h>
#include <pxr/usd/usdGeom/points.h>
#include <pxr/usd/usdGeom/primvarsAPI.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

TfToken _GetInterpolation(const UsdAttribute& attribute)
{
    TfToken interpolation;
    return attribute.GetMetadata(UsdGeomTokens->interpolation, &interpolation) ? interpolation
                                                                               : UsdGeomTokens->vertex;
}

bool _SetInterpolation(const UsdAttribute& attribute, const TfToken& interpolation)
{
    if (!UsdGeomPrimvar::IsValidInterpolation(interpolation)) {
        TF_CODING_ERROR("'%s' is no interpolation that <%s> could have.", interpolation.GetText(),
                        attribute.GetPath().GetText());
        return false;
    }
    return attribute.SetMetadata(UsdGeomTokens->interpolation, interpolation);
}

template <class T>
size_t _GetSize(const UsdAttribute& attribute, UsdTimeCode time)
{
    VtArray<T> array;
    attribute.Get(&array, time);
    return array.size();
}

} // namespace

UsdGeomPrimvar UsdGeomGprim::GetDisplayColorPrimvar() const { return UsdGeomPrimvar(GetDisplayColorAttr()); }

UsdGeomPrimvar UsdGeomGprim::CreateDisplayColorPrimvar(const TfToken& interpolation, int elementSize) const
{
    return UsdGeomPrimvarsAPI(GetPrim()).CreatePrimvar(
        UsdGeomTokens->primvarsDisplayColor, SdfValueTypeNames->Color3fArray, interpolation, elementSize);
}

UsdGeomPrimvar UsdGeomGprim::GetDisplayOpacityPrimvar() const
{
    return UsdGeomPrimvar(GetDisplayOpacityAttr());
}

UsdGeomPrimvar UsdGeomGprim::CreateDisplayOpacityPrimvar(const TfToken& interpolation, int elementSize) const
{
    return UsdGeomPrimvarsAPI(GetPrim()).CreatePrimvar(
        UsdGeomTokens->primvarsDisplayOpacity, SdfValueTypeNames->FloatArray, interpolation, elementSize);
}

TfToken UsdGeomPointBased::GetNormalsInterpolation() const { return _GetInterpolation(GetNormalsAttr()); }

bool UsdGeomPointBased::SetNormalsInterpolation(const TfToken& interpolation)
{
    return _SetInterpolation(GetNormalsAttr(), interpolation);
}

bool UsdGeomPointBased::ComputePointsAtTime(VtArray<GfVec3f>* points, UsdTimeCode time,
                                            UsdTimeCode baseTime) const
{
    std::vector<VtArray<GfVec3f>> pointsArray;
    if (!ComputePointsAtTimes(&pointsArray, {time}, baseTime)) {
        return false;
    }
    *points = std::move(pointsArray.front());
    return true;
}

bool UsdGeomPointBased::ComputePointsAtTimes(std::vector<VtArray<GfVec3f>>* pointsArray,
                                             const std::vector<UsdTimeCode>& times,
                                             UsdTimeCode baseTime) const
{
    UsdGeom_Sample sample, velocitySample, accelerationSample;
    VtVec3fArray points, velocities, accelerations;
    if (!UsdGeom_ReadSample(GetPointsAttr(), baseTime, &sample, &points)) {
        TF_WARN("<%s> has no points.", GetPath().GetText());
        return false;
    }
    UsdGeom_ReadRates(GetVelocitiesAttr(), baseTime, sample, points.size(), &velocitySample, &velocities);
    if (!velocities.empty()) {
        UsdGeom_ReadRates(GetAccelerationsAttr(), baseTime, velocitySample, points.size(),
                          &accelerationSample, &accelerations);
    }
    UsdStageWeakPtr stage = GetPrim().GetStage();
    std::vector<VtArray<GfVec3f>> result(times.size());
    for (size_t i = 0; i < times.size(); ++i) {
        VtVec3fArray interpolated;
        if (velocities.empty() && GetPointsAttr().Get(&interpolated, times[i]) &&
            interpolated.size() == points.size()) {
            points = interpolated;
        }
        if (!ComputePointsAtTime(&result[i], stage, times[i], points, velocities, velocitySample.time,
                                 accelerations)) {
            return false;
        }
    }
    *pointsArray = std::move(result);
    return true;
}

bool UsdGeomPointBased::ComputePointsAtTime(VtArray<GfVec3f>* points, UsdStageWeakPtr& stage,
                                            UsdTimeCode time, const VtVec3fArray& positions,
                                            const VtVec3fArray& velocities, UsdTimeCode velocitiesSampleTime,
                                            const VtVec3fArray& accelerations, float /*velocityScale*/)
{
    const bool fits = (velocities.empty() || velocities.size() >= positions.size()) &&
                      (accelerations.empty() || accelerations.size() >= positions.size());
    if (!stage || !fits) {
        TF_CODING_ERROR("Points cannot be moved on: there is no stage, or fewer velocities than points.");
        return false;
    }
    UsdGeom_Sample sample;
    sample.time = velocitiesSampleTime;
    const double seconds = UsdGeom_SecondsSince(sample, time, stage->GetTimeCodesPerSecond());
    VtArray<GfVec3f> moved(positions.size());
    GfVec3f* const out = moved.data();
    for (size_t i = 0; i < positions.size(); ++i) {
        out[i] = UsdGeom_MoveOn(positions[i], velocities, accelerations, i, seconds);
    }
    *points = std::move(moved);
    return true;
}

const float UsdGeomMesh::SHARPNESS_INFINITE = 10.0f;

bool UsdGeomMesh::IsSharpnessInfinite(float sharpness) { return sharpness >= SHARPNESS_INFINITE; }

bool UsdGeomMesh::ValidateTopology(const VtIntArray& faceVertexIndices, const VtIntArray& faceVertexCounts,
                                   size_t numPoints, std::string* reason)
{
    const auto fail = [reason](const std::string& text) {
        if (reason) {
            *reason = text;
        }
        return false;
    };
    long long sum = 0;
    for (const int count : faceVertexCounts) {
        sum += count;
    }
    if (sum < 0 || static_cast<size_t>(sum) != faceVertexIndices.size()) {
        return fail(TfStringPrintf("faceVertexCounts add up to %lld, but there are %zu faceVertexIndices.",
                                   sum, faceVertexIndices.size()));
    }
    for (const int index : faceVertexIndices) {
        if (index < 0 || static_cast<size_t>(index) >= numPoints) {
            return fail(
                TfStringPrintf("faceVertexIndices holds %d, but there are %zu points.", index, numPoints));
        }
    }
    return true;
}

size_t UsdGeomMesh::GetFaceCount(UsdTimeCode timeCode) const
{
    return _GetSize<int>(GetFaceVertexCountsAttr(), timeCode);
}

TfToken UsdGeomCurves::GetWidthsInterpolation() const { return _GetInterpolation(GetWidthsAttr()); }

bool UsdGeomCurves::SetWidthsInterpolation(const TfToken& interpolation)
{
    return _SetInterpolation(GetWidthsAttr(), interpolation);
}

size_t UsdGeomCurves::GetCurveCount(UsdTimeCode timeCode) const
{
    return _GetSize<int>(GetCurveVertexCountsAttr(), timeCode);
}

TfToken UsdGeomPoints::GetWidthsInterpolation() const { return _GetInterpolation(GetWidthsAttr()); }

bool UsdGeomPoints::SetWidthsInterpolation(const TfToken& interpolation)
{
    return _SetInterpolation(GetWidthsAttr(), interpolation);
}

size_t UsdGeomPoints::GetPointCount(UsdTimeCode timeCode) const
{
    return _GetSize<GfVec3f>(GetPointsAttr(), timeCode);
}

PXR_NAMESPACE_CLOSE_SCOPE
