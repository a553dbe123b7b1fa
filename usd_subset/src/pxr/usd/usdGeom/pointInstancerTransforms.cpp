#include "pxr/usd/usdGeom/samplingUtils.h"

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/pointInstancer.h>
#include <pxr/usd/usdGeom/xformCache.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// The arrays that place the instances. Those that are not empty have an entry for each of the instances.
struct _Placement
{
    VtIntArray protoIndices;
    VtVec3fArray positions, velocities, accelerations, scales, angularVelocities;
    VtArray<GfQuatf> orientations;
    UsdGeom_Sample velocitySample, angularVelocitySample;
};

/// Reads rotations of either precision.
bool _GetOrientations(const UsdAttribute& attribute, UsdTimeCode time, VtArray<GfQuatf>* orientations)
{
    if (attribute.Get(orientations, time)) {
        return true;
    }
    VtArray<GfQuath> halves;
    if (!attribute.Get(&halves, time)) {
        return false;
    }
    orientations->clear();
    for (const GfQuath& quat : std::as_const(halves)) {
        orientations->push_back(GfQuatf(quat));
    }
    return true;
}

template <class T>
void _DropUnlessFilled(const UsdAttribute& attribute, size_t count, VtArray<T>* array)
{
    if (!array->empty() && array->size() != count) {
        TF_WARN("<%s> has %zu entries for %zu instances%s.", attribute.GetPath().GetText(), array->size(),
                count, array->size() < count ? " and is ignored" : "");
    }
    if (array->size() < count) {
        array->clear();
    }
}

bool _ReadPlacement(const UsdGeomPointInstancer& instancer, UsdTimeCode baseTime,
                    const UsdAttribute& rotations, _Placement* placement)
{
    UsdGeom_Sample sample;
    if (!UsdGeom_ReadSample(instancer.GetProtoIndicesAttr(), baseTime, &sample, &placement->protoIndices)) {
        return false;
    }
    const size_t count = placement->protoIndices.size();
    if (!UsdGeom_ReadSample(instancer.GetPositionsAttr(), baseTime, &sample, &placement->positions)) {
        TF_WARN("<%s> has no positions.", instancer.GetPath().GetText());
        return false;
    }
    if (count != 0 && placement->positions.size() != count) {
        TF_WARN("<%s> has %zu positions for %zu protoIndices.", instancer.GetPath().GetText(),
                placement->positions.size(), count);
        return false;
    }
    UsdGeom_ReadRates(instancer.GetVelocitiesAttr(), baseTime, sample, placement->positions.size(),
                      &placement->velocitySample, &placement->velocities);
    if (!placement->velocities.empty()) {
        UsdGeom_Sample unused;
        UsdGeom_ReadRates(instancer.GetAccelerationsAttr(), baseTime, placement->velocitySample,
                          placement->positions.size(), &unused, &placement->accelerations);
    }
    UsdGeom_Sample scaleSample;
    UsdGeom_ReadSample(instancer.GetScalesAttr(), baseTime, &scaleSample, &placement->scales);
    _DropUnlessFilled(instancer.GetScalesAttr(), count, &placement->scales);
    UsdGeom_Sample rotationSample;
    if (UsdGeom_FindSample(rotations, baseTime, &rotationSample) &&
        _GetOrientations(rotations, rotationSample.time, &placement->orientations)) {
        const bool fits = placement->orientations.size() == count;
        _DropUnlessFilled(rotations, count, &placement->orientations);
        if (fits) {
            UsdGeom_ReadRates(instancer.GetAngularVelocitiesAttr(), baseTime, rotationSample, count,
                              &placement->angularVelocitySample, &placement->angularVelocities);
        }
    }
    return true;
}

/// Replaces the sampled arrays by interpolated ones of the same size.
void _Interpolate(const UsdGeomPointInstancer& instancer, UsdTimeCode time, const UsdAttribute& rotations,
                  _Placement* placement)
{
    const size_t count = placement->protoIndices.size();
    VtVec3fArray vectors;
    if (instancer.GetPositionsAttr().Get(&vectors, time) && vectors.size() == count) {
        placement->positions = vectors;
    }
    if (instancer.GetScalesAttr().Get(&vectors, time) && vectors.size() == count) {
        placement->scales = vectors;
    }
    VtArray<GfQuatf> orientations;
    if (_GetOrientations(rotations, time, &orientations) && orientations.size() == count) {
        placement->orientations = orientations;
    }
}

GfMatrix4d _PlaceInstance(const _Placement& placement, size_t i, double seconds, double angularSeconds)
{
    GfMatrix4d matrix(1.0);
    if (!placement.scales.empty()) {
        matrix.SetScale(GfVec3d(placement.scales[i]));
    }
    if (!placement.orientations.empty()) {
        matrix *= GfMatrix4d(1.0).SetRotate(GfQuatd(placement.orientations[i]));
        if (!placement.angularVelocities.empty()) {
            const GfVec3f velocity = placement.angularVelocities[i];
            matrix *= GfMatrix4d(1.0).SetRotate(
                GfRotation(GfVec3d(velocity), angularSeconds * velocity.GetLength()));
        }
    }
    matrix.SetTranslateOnly(GfVec3d(
        UsdGeom_MoveOn(placement.positions[i], placement.velocities, placement.accelerations, i, seconds)));
    return matrix;
}

/// The prototypes' own transforms, for each target of the relationship; false where an index names none.
bool _GetPrototypes(const UsdGeomPointInstancer& instancer, const VtIntArray& protoIndices,
                    SdfPathVector* paths)
{
    if (!instancer.GetPrototypesRel().GetTargets(paths) || paths->empty()) {
        TF_WARN("<%s> has no prototypes.", instancer.GetPath().GetText());
        return false;
    }
    for (const int index : protoIndices) {
        if (index < 0 || size_t(index) >= paths->size()) {
            TF_WARN("protoIndices of <%s> holds %d, but there are %zu prototypes.",
                    instancer.GetPath().GetText(), index, paths->size());
            return false;
        }
    }
    return true;
}

std::vector<GfMatrix4d> _GetPrototypeTransforms(const UsdStageWeakPtr& stage, const SdfPathVector& paths,
                                                UsdTimeCode time)
{
    UsdGeomXformCache cache(time);
    std::vector<GfMatrix4d> matrices(paths.size(), GfMatrix4d(1.0));
    for (size_t i = 0; i < paths.size(); ++i) {
        bool resets = false;
        if (const UsdPrim prim = stage->GetPrimAtPath(paths[i])) {
            matrices[i] = cache.GetLocalTransformation(prim, &resets);
        }
    }
    return matrices;
}

} // namespace

bool UsdGeomPointInstancer::ComputeInstanceTransformsAtTime(VtArray<GfMatrix4d>* xforms, UsdTimeCode time,
                                                            UsdTimeCode baseTime,
                                                            ProtoXformInclusion doProtoXforms,
                                                            MaskApplication applyMask) const
{
    std::vector<VtArray<GfMatrix4d>> xformsArray;
    if (!ComputeInstanceTransformsAtTimes(&xformsArray, {time}, baseTime, doProtoXforms, applyMask)) {
        return false;
    }
    *xforms = std::move(xformsArray.front());
    return true;
}

bool UsdGeomPointInstancer::ComputeInstanceTransformsAtTimes(std::vector<VtArray<GfMatrix4d>>* xformsArray,
                                                             const std::vector<UsdTimeCode>& times,
                                                             UsdTimeCode baseTime,
                                                             ProtoXformInclusion doProtoXforms,
                                                             MaskApplication applyMask) const
{
    UsdAttribute rotations;
    UsesOrientationsf(&rotations);
    _Placement placement;
    if (!_ReadPlacement(*this, baseTime, rotations, &placement)) {
        return false;
    }
    const size_t count = placement.protoIndices.size();
    SdfPathVector protoPaths;
    if (doProtoXforms == IncludeProtoXform && !_GetPrototypes(*this, placement.protoIndices, &protoPaths)) {
        return false;
    }
    const std::vector<bool> mask = applyMask == ApplyMask ? ComputeMaskAtTime(baseTime) : std::vector<bool>();
    if (!mask.empty() && mask.size() != count) {
        TF_WARN("<%s> has %zu ids for %zu instances.", GetPath().GetText(), mask.size(), count);
        return false;
    }
    const UsdStageWeakPtr stage = GetPrim().GetStage();
    const double rate = stage->GetTimeCodesPerSecond();
    const bool interpolates = placement.velocities.empty() && placement.angularVelocities.empty();
    std::vector<VtArray<GfMatrix4d>> result(times.size());
    for (size_t t = 0; t < times.size() && count > 0; ++t) {
        if (interpolates) {
            _Interpolate(*this, times[t], rotations, &placement);
        }
        const double seconds = UsdGeom_SecondsSince(placement.velocitySample, times[t], rate);
        const double angularSeconds = UsdGeom_SecondsSince(placement.angularVelocitySample, times[t], rate);
        const std::vector<GfMatrix4d> protos = _GetPrototypeTransforms(stage, protoPaths, times[t]);
        const VtIntArray& indices = std::as_const(placement.protoIndices);
        VtArray<GfMatrix4d> matrices;
        matrices.reserve(count);
        for (size_t i = 0; i < count; ++i) {
            if (!mask.empty() && !mask[i]) {
                continue;
            }
            const GfMatrix4d placed = _PlaceInstance(std::as_const(placement), i, seconds, angularSeconds);
            matrices.push_back(protos.empty() ? placed : protos[size_t(indices[i])] * placed);
        }
        result[t] = std::move(matrices);
    }
    *xformsArray = std::move(result);
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
