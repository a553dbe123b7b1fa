#pragma once

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usdGeom/boundable.h>

#include <cstdint>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Many instances of few prototypes, each placed by an entry of its arrays.
class VESK_USD_API UsdGeomPointInstancer : public UsdGeomBoundable
{
    VESK_USD_CONCRETE_SCHEMA(UsdGeomPointInstancer, UsdGeomBoundable)

    VESK_USD_SCHEMA_ATTR(ProtoIndices, UsdGeomTokens->protoIndices)
    VESK_USD_SCHEMA_ATTR(Ids, UsdGeomTokens->ids)
    VESK_USD_SCHEMA_ATTR(Positions, UsdGeomTokens->positions)
    VESK_USD_SCHEMA_ATTR(Orientations, UsdGeomTokens->orientations)
    VESK_USD_SCHEMA_ATTR(Orientationsf, UsdGeomTokens->orientationsf)
    VESK_USD_SCHEMA_ATTR(Scales, UsdGeomTokens->scales)
    VESK_USD_SCHEMA_ATTR(Velocities, UsdGeomTokens->velocities)
    VESK_USD_SCHEMA_ATTR(Accelerations, UsdGeomTokens->accelerations)
    VESK_USD_SCHEMA_ATTR(AngularVelocities, UsdGeomTokens->angularVelocities)
    VESK_USD_SCHEMA_ATTR(InvisibleIds, UsdGeomTokens->invisibleIds)
    VESK_USD_SCHEMA_REL(Prototypes, UsdGeomTokens->prototypes)

    /// Whether an instance is placed by its prototype's own transform too.
    enum ProtoXformInclusion
    {
        IncludeProtoXform,
        ExcludeProtoXform
    };
    /// Whether hidden instances are left out.
    enum MaskApplication
    {
        ApplyMask,
        IgnoreMask
    };

    bool ActivateId(int64_t id) const;
    bool ActivateIds(const VtInt64Array& ids) const;
    bool ActivateAllIds() const;
    bool DeactivateId(int64_t id) const;
    bool DeactivateIds(const VtInt64Array& ids) const;
    bool VisId(int64_t id, const UsdTimeCode& time) const;
    bool VisIds(const VtInt64Array& ids, const UsdTimeCode& time) const;
    bool VisAllIds(const UsdTimeCode& time) const;
    bool InvisId(int64_t id, const UsdTimeCode& time) const;
    bool InvisIds(const VtInt64Array& ids, const UsdTimeCode& time) const;

    /// False for each instance that is inactive or invisible; empty where all are shown.
    std::vector<bool> ComputeMaskAtTime(UsdTimeCode time, const VtInt64Array* ids = nullptr) const;
    /// Removes the elements that a mask leaves out; false with a warning where the sizes do not fit.
    template <class T>
    static bool ApplyMaskToArray(const std::vector<bool>& mask, VtArray<T>* dataArray, int elementSize = 1);

    /// Whether orientationsf holds the rotations, which it does where it is authored.
    bool UsesOrientationsf(UsdAttribute* rotationsAttr) const;
    bool UsesOrientationsf(TfToken* rotationsToken = nullptr) const;

    /// The matrix of each instance from its prototype's to the instancer's space, moved on from the samples
    /// at `baseTime` by velocities where there are some; false where the arrays do not fit each other.
    bool ComputeInstanceTransformsAtTime(VtArray<GfMatrix4d>* xforms, UsdTimeCode time, UsdTimeCode baseTime,
                                         ProtoXformInclusion doProtoXforms = IncludeProtoXform,
                                         MaskApplication applyMask = ApplyMask) const;
    bool ComputeInstanceTransformsAtTimes(std::vector<VtArray<GfMatrix4d>>* xformsArray,
                                          const std::vector<UsdTimeCode>& times, UsdTimeCode baseTime,
                                          ProtoXformInclusion doProtoXforms = IncludeProtoXform,
                                          MaskApplication applyMask = ApplyMask) const;

    /// The box around all shown instances.
    bool ComputeExtentAtTime(VtVec3fArray* extent, UsdTimeCode time, UsdTimeCode baseTime) const;
    bool ComputeExtentAtTime(VtVec3fArray* extent, UsdTimeCode time, UsdTimeCode baseTime,
                             const GfMatrix4d& transform) const;
    bool ComputeExtentAtTimes(std::vector<VtVec3fArray>* extents, const std::vector<UsdTimeCode>& times,
                              UsdTimeCode baseTime) const;
    bool ComputeExtentAtTimes(std::vector<VtVec3fArray>* extents, const std::vector<UsdTimeCode>& times,
                              UsdTimeCode baseTime, const GfMatrix4d& transform) const;

    size_t GetInstanceCount(UsdTimeCode timeCode = UsdTimeCode::Default()) const;

private:
    bool _ComputeExtent(VtVec3fArray* extent, UsdTimeCode time, UsdTimeCode baseTime,
                        const GfMatrix4d* transform) const;
    bool _ComputeExtents(std::vector<VtVec3fArray>* extents, const std::vector<UsdTimeCode>& times,
                         UsdTimeCode baseTime, const GfMatrix4d* transform) const;
};

template <class T>
bool UsdGeomPointInstancer::ApplyMaskToArray(const std::vector<bool>& mask, VtArray<T>* dataArray,
                                             int elementSize)
{
    if (!dataArray) {
        TF_CODING_ERROR("NULL dataArray.");
        return false;
    }
    const size_t step = size_t(elementSize);
    if (mask.empty() || dataArray->size() == step) {
        return true;
    }
    if (mask.size() * step != dataArray->size()) {
        TF_WARN("A mask of %zu cannot be applied to an array of %zu values in elements of %d.", mask.size(),
                dataArray->size(), elementSize);
        return false;
    }
    T* const data = dataArray->data();
    size_t kept = 0;
    for (size_t i = 0; i < mask.size(); ++i) {
        for (size_t j = 0; mask[i] && j < step; ++j) {
            data[kept++] = data[i * step + j];
        }
    }
    dataArray->resize(kept);
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
