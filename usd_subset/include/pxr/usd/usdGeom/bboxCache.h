#pragma once

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/tf/chunkedTable.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/hashmap.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/attributeQuery.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/pointInstancer.h>
#include <pxr/usd/usdGeom/xformCache.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Bounds of prims and what is below them at one time, for some purposes, each computed once.
///
/// Invisible prims and prims of other purposes add nothing to the bounds of their ancestors. A box that is
/// not finite adds nothing either. The cache does not notice edits: clear it after each.
///
/// Thread: one at a time.
class VESK_USD_API UsdGeomBBoxCache
{
public:
    /// `useExtentsHint`: models with authored hints answer with these; `ignoreVisibility`: hidden prims
    /// count.
    UsdGeomBBoxCache(UsdTimeCode time, TfTokenVector includedPurposes, bool useExtentsHint = false,
                     bool ignoreVisibility = false);

    GfBBox3d ComputeWorldBound(const UsdPrim& prim);
    /// The world bound with some subtrees left out, others moved by matrices to the space of `prim`, and
    /// `prim` itself by `primOverride`.
    GfBBox3d
    ComputeWorldBoundWithOverrides(const UsdPrim& prim, const SdfPathSet& pathsToSkip,
                                   const GfMatrix4d& primOverride,
                                   const TfHashMap<SdfPath, GfMatrix4d, SdfPath::Hash>& ctmOverrides);
    GfBBox3d ComputeRelativeBound(const UsdPrim& prim, const UsdPrim& relativeToAncestorPrim);
    /// The bound in the space of the prim's parent.
    GfBBox3d ComputeLocalBound(const UsdPrim& prim);
    GfBBox3d ComputeUntransformedBound(const UsdPrim& prim);
    GfBBox3d ComputeUntransformedBound(const UsdPrim& prim, const SdfPathSet& pathsToSkip,
                                       const TfHashMap<SdfPath, GfMatrix4d, SdfPath::Hash>& ctmOverrides);

    /// Bounds of single instances, by their indices; false with a warning where the instancer is malformed.
    bool ComputePointInstanceWorldBounds(const UsdGeomPointInstancer& instancer,
                                         const int64_t* instanceIdBegin, size_t numIds, GfBBox3d* result);
    GfBBox3d ComputePointInstanceWorldBound(const UsdGeomPointInstancer& instancer, int64_t instanceId);
    bool ComputePointInstanceRelativeBounds(const UsdGeomPointInstancer& instancer,
                                            const int64_t* instanceIdBegin, size_t numIds,
                                            const UsdPrim& relativeToAncestorPrim, GfBBox3d* result);
    GfBBox3d ComputePointInstanceRelativeBound(const UsdGeomPointInstancer& instancer, int64_t instanceId,
                                               const UsdPrim& relativeToAncestorPrim);
    bool ComputePointInstanceLocalBounds(const UsdGeomPointInstancer& instancer,
                                         const int64_t* instanceIdBegin, size_t numIds, GfBBox3d* result);
    GfBBox3d ComputePointInstanceLocalBound(const UsdGeomPointInstancer& instancer, int64_t instanceId);
    bool ComputePointInstanceUntransformedBounds(const UsdGeomPointInstancer& instancer,
                                                 const int64_t* instanceIdBegin, size_t numIds,
                                                 GfBBox3d* result);
    GfBBox3d ComputePointInstanceUntransformedBound(const UsdGeomPointInstancer& instancer,
                                                    int64_t instanceId);

    void Clear();
    /// Changes what counts; what is cached stays valid.
    void SetIncludedPurposes(const TfTokenVector& includedPurposes) { _includedPurposes = includedPurposes; }
    const TfTokenVector& GetIncludedPurposes() const { return _includedPurposes; }
    bool GetUseExtentsHint() const { return _useExtentsHint; }
    bool GetIgnoreVisibility() const { return _ignoreVisibility; }

    /// Moves to a time. Bounds that do not vary stay cached, except between the default time and others.
    void SetTime(UsdTimeCode time);
    UsdTimeCode GetTime() const { return _time; }
    /// The time of the samples from which instancers extrapolate by velocities; the cache's time when not
    /// set.
    void SetBaseTime(UsdTimeCode baseTime) { _baseTime = baseTime; }
    UsdTimeCode GetBaseTime() const { return _baseTime.value_or(_time); }
    void ClearBaseTime() { _baseTime = std::nullopt; }
    bool HasBaseTime() const { return _baseTime.has_value(); }

private:
    typedef std::map<TfToken, GfBBox3d> _PurposeToBBoxMap;

    /// A prim; inside a prototype together with the purpose that its instance hands down.
    struct _PrimContext
    {
        UsdPrim prim;
        TfToken instanceInheritablePurpose;

        bool operator==(const _PrimContext& rhs) const
        {
            return prim == rhs.prim && instanceInheritablePurpose == rhs.instanceInheritablePurpose;
        }
    };
    struct _PrimContextHash
    {
        size_t operator()(const _PrimContext& context) const
        {
            return TfHash::Combine(context.prim, context.instanceInheritablePurpose);
        }
    };
    struct _Entry
    {
        _PrimContext context;
        _PurposeToBBoxMap bboxes;
        UsdGeomImageable::PurposeInfo purposeInfo;
        bool isComplete = false;
        bool isVarying = false;
        /// Being computed: an instancer below that leads back here finds no bounds.
        bool isActive = false;
    };

    struct _Frame;

    _PurposeToBBoxMap _Resolve(const UsdPrim& prim);
    void _Open(_Entry* entry, const _Entry* parent, const GfMatrix4d& inverseComponentCtm,
               std::vector<_Frame>* stack);
    std::vector<_Entry*> _GetIncludedChildren(_Entry* entry);
    void _AddChildBounds(const _Frame& frame);
    bool _AddExtentsHint(const UsdPrim& prim, _Entry* entry);
    void _AddExtent(const UsdPrim& prim, _Entry* entry);
    void _UpdateVariability(const UsdPrim& prim, _Entry* entry);
    bool _ShouldIncludePrim(const UsdPrim& prim) const;
    bool _UseExtentsHintForPrim(const UsdPrim& prim) const;
    bool _IsVarying(const UsdAttribute& attribute) const;
    void _UpdatePurposeInfo(_Entry* entry, const _Entry* parent);
    GfBBox3d _Combine(const _PurposeToBBoxMap& bboxes) const;
    GfBBox3d _ComputeWithOverrides(const UsdPrim& prim, const SdfPathSet& pathsToSkip,
                                   const GfMatrix4d* primOverride,
                                   const TfHashMap<SdfPath, GfMatrix4d, SdfPath::Hash>& ctmOverrides);
    bool _ComputePointInstanceBounds(const UsdGeomPointInstancer& instancer, const int64_t* instanceIdBegin,
                                     size_t numIds, const GfMatrix4d& xform, GfBBox3d* result);

    UsdTimeCode _time;
    std::optional<UsdTimeCode> _baseTime;
    TfTokenVector _includedPurposes;
    UsdGeomXformCache _ctmCache;
    Tf_ChunkedTable<_Entry, &_Entry::context, _PrimContextHash> _entries;
    bool _useExtentsHint;
    bool _ignoreVisibility;
};

PXR_NAMESPACE_CLOSE_SCOPE
