#include <pxr/usd/usdGeom/bboxCache.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/kind/registry.h>
#include <pxr/usd/usd/modelAPI.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/boundable.h>
#include <pxr/usd/usdGeom/modelAPI.h>

#include <algorithm>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// Whether the prim's kind gathers what is below it: a component or subcomponent.
bool _IsComponent(const UsdPrim& prim)
{
    TfToken kind;
    return UsdModelAPI(prim).GetKind(&kind) && (KindRegistry::IsA(kind, KindTokens->component) ||
                                                KindRegistry::IsA(kind, KindTokens->subcomponent));
}

UsdPrim _FindComponent(const UsdPrim& start)
{
    UsdPrim prim = start;
    while (prim && !_IsComponent(prim)) {
        prim = prim.GetParent();
    }
    return prim ? prim : start.GetStage()->GetPseudoRoot();
}

bool _IsValid(const UsdPrim& prim)
{
    if (!prim) {
        TF_CODING_ERROR("Bounds cannot be computed of %s.", UsdDescribe(prim).c_str());
    }
    return bool(prim);
}

auto _Predicate() { return UsdPrimIsActive && UsdPrimIsDefined && !UsdPrimIsAbstract; }

} // namespace

UsdGeomBBoxCache::UsdGeomBBoxCache(UsdTimeCode time, TfTokenVector includedPurposes, bool useExtentsHint,
                                   bool ignoreVisibility)
    : _time(time),
      _includedPurposes(std::move(includedPurposes)),
      _ctmCache(time),
      _useExtentsHint(useExtentsHint),
      _ignoreVisibility(ignoreVisibility)
{}

void UsdGeomBBoxCache::Clear()
{
    _ctmCache.Clear();
    _entries.Clear();
}

void UsdGeomBBoxCache::SetTime(UsdTimeCode time)
{
    if (time == _time) {
        return;
    }
    // What does not vary over the samples may still differ from the default value.
    const bool clearAll = _time.IsDefault() || time.IsDefault();
    _entries.ForEach([clearAll](_Entry& entry) {
        if (clearAll || entry.isVarying) {
            entry.isComplete = false;
            entry.bboxes.clear();
        }
        return true;
    });
    _time = time;
    _ctmCache.SetTime(time);
}

GfBBox3d UsdGeomBBoxCache::_Combine(const _PurposeToBBoxMap& bboxes) const
{
    GfBBox3d combined;
    for (const TfToken& purpose : _includedPurposes) {
        const auto it = bboxes.find(purpose);
        if (it != bboxes.end() && !it->second.GetRange().IsEmpty()) {
            combined = GfBBox3d::Combine(combined, it->second);
        }
    }
    return combined;
}

GfBBox3d UsdGeomBBoxCache::ComputeUntransformedBound(const UsdPrim& prim)
{
    return _IsValid(prim) ? _Combine(_Resolve(prim)) : GfBBox3d();
}

namespace {

GfBBox3d _Transformed(GfBBox3d bbox, const GfMatrix4d& matrix)
{
    bbox.Transform(matrix);
    return bbox;
}

} // namespace

GfBBox3d UsdGeomBBoxCache::ComputeWorldBound(const UsdPrim& prim)
{
    const GfBBox3d bbox = ComputeUntransformedBound(prim);
    return prim ? _Transformed(bbox, _ctmCache.GetLocalToWorldTransform(prim)) : bbox;
}

GfBBox3d UsdGeomBBoxCache::ComputeRelativeBound(const UsdPrim& prim, const UsdPrim& relativeToAncestorPrim)
{
    const GfBBox3d bbox = ComputeUntransformedBound(prim);
    if (!prim) {
        return bbox;
    }
    const GfMatrix4d toAncestor = _ctmCache.GetLocalToWorldTransform(prim) *
                                  _ctmCache.GetLocalToWorldTransform(relativeToAncestorPrim).GetInverse();
    return _Transformed(bbox, toAncestor);
}

GfBBox3d UsdGeomBBoxCache::ComputeLocalBound(const UsdPrim& prim)
{
    const GfBBox3d bbox = ComputeUntransformedBound(prim);
    bool resets = false;
    return prim ? _Transformed(bbox, _ctmCache.GetLocalTransformation(prim, &resets)) : bbox;
}

// ---- Resolution ----

bool UsdGeomBBoxCache::_ShouldIncludePrim(const UsdPrim& prim) const
{
    // Prims without a type or of an unknown one may have imageable prims below.
    if (!prim.IsA<UsdTyped>()) {
        return true;
    }
    const UsdGeomImageable imageable(prim);
    if (!imageable) {
        return false;
    }
    TfToken visibility;
    return _ignoreVisibility || !imageable.GetVisibilityAttr().Get(&visibility, _time) ||
           visibility != UsdGeomTokens->invisible;
}

bool UsdGeomBBoxCache::_UseExtentsHintForPrim(const UsdPrim& prim) const
{
    return _useExtentsHint && prim.IsModel() && !prim.IsPseudoRoot();
}

bool UsdGeomBBoxCache::_IsVarying(const UsdAttribute& attribute) const
{
    // A little beside the time, so that a time on one of several samples is found to lie between two.
    const double step = 0.000001;
    const double time = _time.IsDefault() ? 1.0 + step : _time.GetValue() + step;
    double lower = 0.0, upper = 0.0;
    bool hasSamples = false;
    if (!attribute || !attribute.GetBracketingTimeSamples(time, &lower, &upper, &hasSamples) || !hasSamples) {
        return false;
    }
    for (const double offset : {0.0, step, -step}) {
        if (offset != 0.0) {
            attribute.GetBracketingTimeSamples(lower + offset, &lower, &upper, &hasSamples);
        }
        if (lower != upper) {
            return true;
        }
    }
    return false;
}

void UsdGeomBBoxCache::_UpdatePurposeInfo(_Entry* entry, const _Entry* parent)
{
    using PurposeInfo = UsdGeomImageable::PurposeInfo;
    const TfToken& fromInstance = entry->context.instanceInheritablePurpose;
    // Up to the nearest ancestor whose purpose is known, then down again.
    std::vector<_Entry*> open;
    const PurposeInfo* above = parent && parent->purposeInfo ? &parent->purposeInfo : nullptr;
    for (_Entry* it = entry; !it->context.prim.IsPseudoRoot();) {
        open.push_back(it);
        if (above || it->context.prim.IsPrototype()) {
            break;
        }
        const UsdPrim next = it->context.prim.GetParent();
        it = &_entries.FindOrAdd({next, fromInstance});
        if (it->purposeInfo) {
            above = &it->purposeInfo;
            break;
        }
    }
    for (; !open.empty(); open.pop_back()) {
        const UsdPrim& prim = open.back()->context.prim;
        PurposeInfo& info = open.back()->purposeInfo;
        if (prim.IsPrototype()) {
            // A prototype has no purpose of its own; its instances hand theirs down.
            info = PurposeInfo(fromInstance.IsEmpty() ? UsdGeomTokens->default_ : fromInstance,
                               !fromInstance.IsEmpty());
        } else {
            const UsdGeomImageable imageable(prim);
            info = above ? imageable.ComputePurposeInfo(*above) : imageable.ComputePurposeInfo();
        }
        above = &info;
    }
}

bool UsdGeomBBoxCache::_AddExtentsHint(const UsdPrim& prim, _Entry* entry)
{
    const UsdAttribute attribute = UsdGeomModelAPI(prim).GetExtentsHintAttr();
    VtVec3fArray corners;
    if (!attribute || !attribute.Get(&corners, _time)) {
        return false;
    }
    const TfTokenVector& purposes = UsdGeomImageable::GetOrderedPurposeTokens();
    for (size_t i = 0; i < purposes.size() && 2 * i + 2 <= corners.size(); ++i) {
        entry->bboxes[purposes[i]] =
            GfBBox3d(GfRange3d{GfVec3d(corners[2 * i]), GfVec3d(corners[2 * i + 1])});
    }
    entry->isVarying = _IsVarying(attribute);
    return true;
}

void UsdGeomBBoxCache::_AddExtent(const UsdPrim& prim, _Entry* entry)
{
    VtVec3fArray extent;
    if (UsdGeomBoundable(prim).ComputeExtent(_time, &extent)) {
        entry->bboxes[entry->purposeInfo.purpose].SetRange(GfRange3d{GfVec3d(extent[0]), GfVec3d(extent[1])});
    }
}

namespace {

/// Whether an extent that has to be computed may differ from time to time. Instancers are taken to, whatever
/// their own attributes are, since their prototypes may change.
bool _ComputedExtentMightVary(const UsdPrim& prim)
{
    if (prim.IsA<UsdGeomPointInstancer>()) {
        return true;
    }
    const std::vector<UsdAttribute> attributes = prim.GetAuthoredAttributes();
    return std::any_of(attributes.begin(), attributes.end(),
                       [](const UsdAttribute& attribute) { return attribute.ValueMightBeTimeVarying(); });
}

} // namespace

void UsdGeomBBoxCache::_UpdateVariability(const UsdPrim& prim, _Entry* entry)
{
    const UsdGeomImageable imageable(prim);
    const UsdGeomBoundable boundable(prim);
    const UsdAttribute extent = boundable ? boundable.GetExtentAttr() : UsdAttribute();
    entry->isVarying = _ctmCache.TransformMightBeTimeVarying(prim) || _IsVarying(extent) ||
                       (boundable && !extent.HasAuthoredValue() && _ComputedExtentMightVary(prim)) ||
                       (imageable && !_ignoreVisibility && _IsVarying(imageable.GetVisibilityAttr()));
}

/// A prim whose children are being resolved.
struct UsdGeomBBoxCache::_Frame
{
    _Entry* entry = nullptr;
    GfMatrix4d inverseComponentCtm{1.0};
    std::vector<_Entry*> children;
    size_t next = 0;
};

UsdGeomBBoxCache::_PurposeToBBoxMap UsdGeomBBoxCache::_Resolve(const UsdPrim& prim)
{
    _Entry* const entry = &_entries.FindOrAdd({prim, TfToken()});
    if (entry->isComplete) {
        return entry->bboxes;
    }
    // Depth first with a stack of its own, since a namespace may be deeper than the thread's stack.
    // OpenUSD takes the enclosing component's transform at the default time, whatever time is asked for. The
    // box is looser then, and looser alike.
    const GfMatrix4d componentCtm = UsdGeomXformCache().GetLocalToWorldTransform(_FindComponent(prim));
    std::vector<_Frame> stack;
    _Open(entry, nullptr, componentCtm.GetInverse(), &stack);
    while (!stack.empty()) {
        _Frame& frame = stack.back();
        if (frame.next < frame.children.size()) {
            _Entry* const child = frame.children[frame.next++];
            // Prototypes are resolved in their own space.
            const bool isInstance = frame.entry->context.prim.IsInstance();
            const GfMatrix4d inverse = isInstance ? GfMatrix4d(1.0) : frame.inverseComponentCtm;
            _Open(child, isInstance ? nullptr : frame.entry, inverse, &stack);
        } else {
            _AddChildBounds(frame);
            frame.entry->isComplete = true;
            frame.entry->isActive = false;
            stack.pop_back();
        }
    }
    return entry->bboxes;
}

// parent: the entry of the prim above, where it is at hand.
void UsdGeomBBoxCache::_Open(_Entry* entry, const _Entry* parent, const GfMatrix4d& inverseComponentCtm,
                             std::vector<_Frame>* stack)
{
    const UsdPrim& prim = entry->context.prim;
    if (entry->isComplete || entry->isActive) {
        return;
    }
    if (!entry->purposeInfo) {
        _UpdatePurposeInfo(entry, parent);
    }
    if (_UseExtentsHintForPrim(prim) && _AddExtentsHint(prim, entry)) {
        entry->isComplete = true;
        return;
    }
    if (!entry->isVarying) {
        _UpdateVariability(prim, entry);
    }
    entry->isActive = true;
    if (prim.IsA<UsdGeomBoundable>()) {
        _AddExtent(prim, entry);
        entry->isComplete = true;
        entry->isActive = false;
        return;
    }
    _Frame frame;
    frame.entry = entry;
    frame.inverseComponentCtm =
        _IsComponent(prim) ? _ctmCache.GetLocalToWorldTransform(prim).GetInverse() : inverseComponentCtm;
    frame.children = _GetIncludedChildren(entry);
    stack->push_back(std::move(frame));
}

std::vector<UsdGeomBBoxCache::_Entry*> UsdGeomBBoxCache::_GetIncludedChildren(_Entry* entry)
{
    const _PrimContext& context = entry->context;
    const bool isInstance = context.prim.IsInstance();
    const UsdPrim parent = isInstance ? context.prim.GetPrototype() : context.prim;
    const TfToken purpose =
        isInstance ? entry->purposeInfo.GetInheritablePurpose() : context.instanceInheritablePurpose;
    std::vector<_Entry*> children;
    for (const UsdPrim& child : parent.GetFilteredChildren(_Predicate())) {
        if (_ignoreVisibility || _ShouldIncludePrim(child)) {
            children.push_back(&_entries.FindOrAdd({child, purpose}));
            continue;
        }
        // The parent has to be computed again when the child may have become visible.
        const UsdGeomImageable imageable(child);
        entry->isVarying |= imageable && _IsVarying(imageable.GetVisibilityAttr());
    }
    return children;
}

void UsdGeomBBoxCache::_AddChildBounds(const _Frame& frame)
{
    const UsdPrim& prim = frame.entry->context.prim;
    const bool isInstance = prim.IsInstance();
    // Boxes are joined in the space of the enclosing component, where they are tightest, and kept in the
    // prim's own.
    GfMatrix4d toComponent(1.0);
    bool hasBounds = false;
    for (const _Entry* const child : frame.children) {
        frame.entry->isVarying |= child->isVarying;
        if (child->bboxes.empty() || !child->isComplete) {
            continue;
        }
        const UsdPrim& childPrim = child->context.prim;
        if (!hasBounds) {
            toComponent = _ctmCache.GetLocalToWorldTransform(prim) * frame.inverseComponentCtm;
            hasBounds = true;
        }
        bool resets = false;
        const GfMatrix4d childToComponent =
            isInstance ? _ctmCache.GetLocalTransformation(childPrim, &resets) * toComponent
                       : _ctmCache.GetLocalToWorldTransform(childPrim) * frame.inverseComponentCtm;
        for (const auto& [purpose, bbox] : child->bboxes) {
            GfBBox3d& joined = frame.entry->bboxes[purpose];
            const GfRange3d range = _Transformed(bbox, childToComponent).ComputeAlignedRange();
            joined.SetRange(GfRange3d(joined.GetRange()).UnionWith(range));
        }
    }
    if (hasBounds) {
        const GfMatrix4d toLocal = toComponent.GetInverse();
        for (auto& [purpose, bbox] : frame.entry->bboxes) {
            bbox.SetMatrix(toLocal);
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
