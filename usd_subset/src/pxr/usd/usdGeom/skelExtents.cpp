// Extents of skeletons: boxes around their joints. What they deform is taken into account as a margin, which
// is how much it stands out from the joints at rest.

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/matrix3f.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/range3d.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/schemaRegistry.h>
#include <pxr/usd/usd/stage.h>
#include <pxr/usd/usdGeom/boundable.h>
#include <pxr/usd/usdGeom/boundableComputeExtent.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/xformCache.h>

#include <algorithm>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// What the schemas are called; they have no classes here.
struct _Names
{
    const TfToken root{"SkelRoot"};
    const TfToken skeleton{"Skeleton"};
    const TfToken animation{"SkelAnimation"};
    const TfToken bindingApi{"SkelBindingAPI"};
    const TfToken boundSkeleton{"skel:skeleton"};
    const TfToken animationSource{"skel:animationSource"};
    const TfToken geomBindTransform{"primvars:skel:geomBindTransform"};
    const TfToken joints{"joints"};
    const TfToken restTransforms{"restTransforms"};
    const TfToken translations{"translations"};
    const TfToken rotations{"rotations"};
    const TfToken scales{"scales"};

    static const _Names& Get()
    {
        static const _Names* const names = new _Names;
        return *names;
    }
};

bool _IsA(const UsdPrim& prim, const TfToken& schema) { return prim && prim.IsA(schema); }

/// The first prim that a relationship of a prim with the binding schema leads to; nothing where it has no
/// opinion, an invalid prim where it leads to none of the schema.
std::optional<UsdPrim> _FindBound(const UsdPrim& prim, const TfToken& relationship, const TfToken& schema)
{
    SdfPathVector targets;
    const UsdRelationship binding = prim.GetRelationship(relationship);
    if (!prim.HasAPI(_Names::Get().bindingApi) || !binding || !binding.GetForwardedTargets(&targets) ||
        (targets.empty() && !binding.HasAuthoredTargets())) {
        return std::nullopt;
    }
    const UsdPrim target = targets.empty() ? UsdPrim() : prim.GetStage()->GetPrimAtPath(targets.front());
    return _IsA(target, schema) ? target : UsdPrim();
}

/// The joints of one skeleton, and where they are.
class _Skeleton
{
public:
    explicit _Skeleton(const UsdPrim& prim) : _prim(prim)
    {
        VtTokenArray joints;
        prim.GetAttribute(_Names::Get().joints).Get(&joints);
        std::unordered_map<SdfPath, int, SdfPath::Hash> places;
        for (size_t i = 0; i != joints.size(); ++i) {
            const SdfPath path(joints[i].GetString());
            places[path] = static_cast<int>(i);
            _places[joints[i]] = i;
        }
        for (const TfToken& joint : joints) {
            _parents.push_back(_FindParent(places, SdfPath(joint.GetString())));
            _isOrdered = _isOrdered && _parents.back() < static_cast<int>(_parents.size()) - 1;
        }
        if (!_isOrdered) {
            TF_WARN("Skeleton <%s> has no extent: its joints must come after those above them.",
                    prim.GetPath().GetText());
        }
        prim.GetAttribute(_Names::Get().restTransforms).Get(&_rest);
        _hasRest = _rest.size() == joints.size();
    }

    /// The joints' transforms in the skeleton's space; false where they are not known.
    bool ComputeTransforms(const UsdTimeCode& time, bool atRest, VtMatrix4dArray* transforms) const
    {
        VtMatrix4dArray local;
        if (!_isOrdered || !_ComputeLocal(time, atRest, &local)) {
            return false;
        }
        for (size_t i = 0; i != local.size(); ++i) {
            if (_parents[i] >= 0) {
                local[i] = local[i] * local[static_cast<size_t>(_parents[i])];
            }
        }
        *transforms = std::move(local);
        return true;
    }

private:
    static int _FindParent(const std::unordered_map<SdfPath, int, SdfPath::Hash>& places,
                           const SdfPath& joint)
    {
        // Names of joints are relative paths, above which there is always one more "..".
        SdfPath path = joint;
        for (size_t left = joint.GetPathElementCount(); left > 1; --left) {
            path = path.GetParentPath();
            const auto found = places.find(path);
            if (found != places.end()) {
                return found->second;
            }
        }
        return -1;
    }

    UsdPrim _FindAnimation() const
    {
        for (UsdPrim prim = _prim; prim && !prim.IsPseudoRoot(); prim = prim.GetParent()) {
            if (const auto bound = _FindBound(prim, _Names::Get().animationSource, _Names::Get().animation)) {
                return bound->IsValid() && bound->IsActive() ? *bound : UsdPrim();
            }
        }
        return UsdPrim();
    }

    bool _ComputeLocal(const UsdTimeCode& time, bool atRest, VtMatrix4dArray* local) const
    {
        const UsdPrim animation = atRest ? UsdPrim() : _FindAnimation();
        VtTokenArray animated;
        if (animation) {
            animation.GetAttribute(_Names::Get().joints).Get(&animated);
        }
        *local = _rest;
        VtMatrix4dArray moved;
        if (animated.empty() || !_ReadAnimation(animation, animated.size(), time, &moved)) {
            return _hasRest;
        }
        local->resize(_parents.size());
        std::vector<char> isMoved(_parents.size(), 0);
        for (size_t i = 0; i != animated.size(); ++i) {
            const auto place = _places.find(animated[i]);
            if (place != _places.end()) {
                (*local)[place->second] = moved[i];
                isMoved[place->second] = 1;
            }
        }
        return _hasRest || std::count(isMoved.begin(), isMoved.end(), 0) == 0;
    }

    static bool _ReadAnimation(const UsdPrim& animation, size_t count, const UsdTimeCode& time,
                               VtMatrix4dArray* transforms)
    {
        VtVec3fArray translations;
        VtQuatfArray rotations;
        VtVec3hArray scales;
        if (!animation.GetAttribute(_Names::Get().translations).Get(&translations, time) ||
            !animation.GetAttribute(_Names::Get().rotations).Get(&rotations, time) ||
            !animation.GetAttribute(_Names::Get().scales).Get(&scales, time) ||
            translations.size() != count || rotations.size() != count || scales.size() != count) {
            return false;
        }
        transforms->resize(count);
        for (size_t i = 0; i != count; ++i) {
            const GfMatrix3f rotation(rotations[i]);
            GfMatrix4d& transform = (*transforms)[i];
            transform.SetIdentity();
            for (int row = 0; row != 3; ++row) {
                for (int column = 0; column != 3; ++column) {
                    transform[row][column] = rotation[row][column] * scales[i][row];
                }
                transform[3][row] = translations[i][row];
            }
        }
        return true;
    }

    UsdPrim _prim;
    std::vector<int> _parents; // -1: none
    std::unordered_map<TfToken, size_t, TfToken::HashFunctor> _places;
    VtMatrix4dArray _rest; // each in the space of the joint above
    bool _hasRest = false;
    bool _isOrdered = true;
};

GfRange3f _ComputeJointsRange(const VtMatrix4dArray& joints, float padding, const GfMatrix4d* transform)
{
    GfRange3f range;
    for (const GfMatrix4d& joint : joints) {
        const GfVec3f pivot(joint.ExtractTranslation());
        range.UnionWith(transform ? GfVec3f(transform->TransformAffine(pivot)) : pivot);
    }
    range.SetMin(range.GetMin() - GfVec3f(padding));
    range.SetMax(range.GetMax() + GfVec3f(padding));
    return range;
}

/// A prim that a skeleton deforms.
struct _Target
{
    UsdPrim prim;
    UsdAttribute geomBindTransform; // invalid: none
};

float _ComputePadding(const VtMatrix4dArray& restJoints, const _Target& target)
{
    const UsdTimeCode time = UsdTimeCode::EarliestTime();
    VtVec3fArray extent;
    if (!UsdGeomBoundable(target.prim).GetExtentAttr().Get(&extent, time) || extent.size() != 2) {
        return 0.0f;
    }
    GfMatrix4d bind(1.0);
    if (target.geomBindTransform && !target.geomBindTransform.Get(&bind, time)) {
        bind.SetIdentity();
    }
    const GfRange3d range =
        GfBBox3d(GfRange3d(GfVec3d(extent[0]), GfVec3d(extent[1])), bind).ComputeAlignedRange();
    const GfRange3f joints = _ComputeJointsRange(restJoints, 0.0f, nullptr);
    const GfVec3f below = joints.GetMin() - GfVec3f(range.GetMin());
    const GfVec3f above = GfVec3f(range.GetMax()) - joints.GetMax();
    float padding = 0.0f;
    for (int i = 0; i != 3; ++i) {
        padding = std::max({padding, below[i], above[i]});
    }
    return padding;
}

/// What the prims below a root are bound to; bindings are handed down.
std::map<SdfPath, std::vector<_Target>> _FindTargets(const UsdPrim& root)
{
    struct Inherited
    {
        SdfPath path;
        UsdPrim skeleton;
        UsdAttribute geomBindTransform;
    };
    std::map<SdfPath, std::vector<_Target>> targets;
    std::vector<Inherited> above{{SdfPath::AbsoluteRootPath(), UsdPrim(), UsdAttribute()}};
    UsdPrimRange range(root, UsdTraverseInstanceProxies());
    for (auto it = range.begin(); it != range.end(); ++it) {
        const UsdPrim prim = *it;
        if (!prim.IsA<UsdGeomImageable>()) {
            it.PruneChildren();
            continue;
        }
        while (!prim.GetPath().HasPrefix(above.back().path)) {
            above.pop_back();
        }
        Inherited here = above.back();
        here.path = prim.GetPath();
        if (const auto bound = _FindBound(prim, _Names::Get().boundSkeleton, _Names::Get().skeleton)) {
            here.skeleton = *bound;
        }
        const UsdAttribute bind = prim.HasAPI(_Names::Get().bindingApi)
                                      ? prim.GetAttribute(_Names::Get().geomBindTransform)
                                      : UsdAttribute();
        if (bind && bind.HasAuthoredValue()) {
            here.geomBindTransform = bind;
        }
        const bool isDeformed = prim.IsA<UsdGeomBoundable>() && !prim.IsA(_Names::Get().skeleton) &&
                                !prim.IsA(_Names::Get().root);
        if (isDeformed && here.skeleton && here.skeleton.IsActive()) {
            targets[here.skeleton.GetPath()].push_back({prim, here.geomBindTransform});
            it.PruneChildren();
        }
        above.push_back(std::move(here));
    }
    return targets;
}

bool _ComputeRoot(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                  VtVec3fArray* extent)
{
    const UsdPrim root = boundable.GetPrim();
    std::map<SdfPath, std::vector<_Target>> bindings = _FindTargets(root);
    if (bindings.empty()) {
        // Skeletons that deform nothing stand for themselves.
        for (const UsdPrim& prim : UsdPrimRange(root, UsdTraverseInstanceProxies())) {
            if (prim.IsA(_Names::Get().skeleton)) {
                bindings[prim.GetPath()];
            }
        }
    }
    UsdGeomXformCache transforms;
    GfRange3d all;
    for (const auto& [path, targets] : bindings) {
        const UsdPrim prim = root.GetStage()->GetPrimAtPath(path);
        const _Skeleton skeleton(prim);
        VtMatrix4dArray joints, restJoints;
        if (!skeleton.ComputeTransforms(time, false, &joints)) {
            continue;
        }
        float padding = 0.0f;
        if (skeleton.ComputeTransforms(time, true, &restJoints)) {
            for (const _Target& target : targets) {
                padding = std::max(padding, _ComputePadding(restJoints, target));
            }
        }
        bool resets = false;
        GfMatrix4d toRoot = transforms.ComputeRelativeTransform(prim, root, &resets);
        if (!resets && transform) {
            toRoot *= *transform;
        }
        const GfRange3f range = _ComputeJointsRange(joints, padding, &toRoot);
        all.UnionWith(GfVec3d(range.GetMin()));
        all.UnionWith(GfVec3d(range.GetMax()));
    }
    if (all.IsEmpty()) {
        return false;
    }
    *extent = VtVec3fArray{GfVec3f(all.GetMin()), GfVec3f(all.GetMax())};
    return true;
}

bool _ComputeSkeleton(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                      VtVec3fArray* extent)
{
    VtMatrix4dArray joints;
    if (!_Skeleton(boundable.GetPrim()).ComputeTransforms(time, false, &joints)) {
        return false;
    }
    const GfRange3f range = _ComputeJointsRange(joints, 0.0f, transform);
    *extent = VtVec3fArray{range.GetMin(), range.GetMax()};
    return true;
}

} // namespace

TF_REGISTRY_FUNCTION(UsdGeomBoundable)
{
    UsdSchemaRegistry::GetInstance(); // which declares the types
    UsdGeomRegisterComputeExtentFunction(UsdSchemaRegistry::GetTypeFromName(_Names::Get().root),
                                         _ComputeRoot);
    UsdGeomRegisterComputeExtentFunction(UsdSchemaRegistry::GetTypeFromName(_Names::Get().skeleton),
                                         _ComputeSkeleton);
}

PXR_NAMESPACE_CLOSE_SCOPE
