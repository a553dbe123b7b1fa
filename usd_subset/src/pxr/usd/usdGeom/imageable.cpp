#include <pxr/usd/usdGeom/imageable.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/visibilityAPI.h>
#include <pxr/usd/usdGeom/xformCache.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

const TfTokenVector& UsdGeomImageable::GetOrderedPurposeTokens()
{
    static const TfTokenVector purposes = {UsdGeomTokens->default_, UsdGeomTokens->render,
                                           UsdGeomTokens->proxy, UsdGeomTokens->guide};
    return purposes;
}

// ---- Visibility ----

namespace {

bool _IsInvisible(const UsdGeomImageable& imageable, const UsdTimeCode& time)
{
    TfToken visibility;
    return imageable && imageable.GetVisibilityAttr().Get(&visibility, time) &&
           visibility == UsdGeomTokens->invisible;
}

bool _MakeInheritedIfInvisible(const UsdGeomImageable& imageable, const UsdTimeCode& time)
{
    if (!_IsInvisible(imageable, time)) {
        return false;
    }
    imageable.CreateVisibilityAttr().Set(UsdGeomTokens->inherited, time);
    return true;
}

/// The nearest opinion about one purpose's visibility on the way up, else what holds without any.
TfToken _ComputePurposeVisibility(const UsdPrim& start, const TfToken& purpose, const UsdTimeCode& time)
{
    for (UsdPrim prim = start; prim; prim = prim.GetParent()) {
        const UsdGeomImageable imageable(prim);
        const UsdAttribute attribute =
            imageable ? imageable.GetPurposeVisibilityAttr(purpose) : UsdAttribute();
        TfToken visibility;
        if (attribute && attribute.HasAuthoredValue() && attribute.Get(&visibility, time)) {
            return visibility;
        }
    }
    if (purpose == UsdGeomTokens->proxy || purpose == UsdGeomTokens->render) {
        return UsdGeomTokens->inherited;
    }
    if (purpose != UsdGeomTokens->guide) {
        TF_CODING_ERROR("'%s' is no purpose whose visibility at <%s> could be told.", purpose.GetText(),
                        start.GetPath().GetText());
    }
    return UsdGeomTokens->invisible;
}

} // namespace

TfToken UsdGeomImageable::ComputeVisibility(const UsdTimeCode& time) const
{
    for (UsdPrim prim = GetPrim(); prim; prim = prim.GetParent()) {
        if (_IsInvisible(UsdGeomImageable(prim), time)) {
            return UsdGeomTokens->invisible;
        }
    }
    return UsdGeomTokens->inherited;
}

UsdAttribute UsdGeomImageable::GetPurposeVisibilityAttr(const TfToken& purpose) const
{
    if (purpose == UsdGeomTokens->default_) {
        return GetVisibilityAttr();
    }
    const UsdGeomVisibilityAPI api(GetPrim());
    return api ? api.GetPurposeVisibilityAttr(purpose) : UsdAttribute();
}

TfToken UsdGeomImageable::ComputeEffectiveVisibility(const TfToken& purpose, const UsdTimeCode& time) const
{
    if (ComputeVisibility(time) == UsdGeomTokens->invisible) {
        return UsdGeomTokens->invisible;
    }
    return purpose == UsdGeomTokens->default_ ? UsdGeomTokens->visible
                                              : _ComputePurposeVisibility(GetPrim(), purpose, time);
}

void UsdGeomImageable::MakeVisible(const UsdTimeCode& time) const
{
    _MakeInheritedIfInvisible(*this, time);
    std::vector<UsdPrim> chain;
    for (UsdPrim prim = GetPrim(); prim; prim = prim.GetParent()) {
        chain.push_back(prim);
    }
    // From the top: below the first ancestor that was invisible, whatever is beside the way down gets hidden.
    bool wasHidden = false;
    for (size_t i = chain.size(); i-- > 1;) {
        const UsdGeomImageable parent(chain[i]);
        if (!parent) {
            continue;
        }
        wasHidden = _MakeInheritedIfInvisible(parent, time) || wasHidden;
        if (!wasHidden) {
            continue;
        }
        for (const UsdPrim& child : chain[i].GetAllChildren()) {
            const UsdGeomImageable sibling(child);
            if (child != chain[i - 1] && sibling) {
                sibling.CreateVisibilityAttr().Set(UsdGeomTokens->invisible, time);
            }
        }
    }
}

void UsdGeomImageable::MakeInvisible(const UsdTimeCode& time) const
{
    const UsdAttribute attribute = CreateVisibilityAttr();
    TfToken visibility;
    if (!attribute.Get(&visibility, time) || visibility != UsdGeomTokens->invisible) {
        attribute.Set(UsdGeomTokens->invisible, time);
    }
}

// ---- Purpose ----

namespace {

TfToken _GetAuthoredPurpose(const UsdPrim& prim)
{
    TfToken purpose;
    const UsdGeomImageable imageable(prim);
    if (imageable) {
        const UsdAttribute attribute = imageable.GetPurposeAttr();
        if (attribute.HasAuthoredValue()) {
            attribute.Get(&purpose);
        }
    }
    return purpose;
}

TfToken _GetInheritedPurpose(const UsdPrim& prim)
{
    for (UsdPrim parent = prim.GetParent(); parent; parent = parent.GetParent()) {
        const TfToken purpose = _GetAuthoredPurpose(parent);
        if (!purpose.IsEmpty()) {
            return purpose;
        }
    }
    return TfToken();
}

TfToken _GetFallbackPurpose(const UsdGeomImageable& imageable)
{
    TfToken purpose = UsdGeomTokens->default_;
    if (imageable) {
        imageable.GetPurposeAttr().Get(&purpose);
    }
    return purpose;
}

} // namespace

TfToken UsdGeomImageable::ComputePurpose() const { return ComputePurposeInfo().purpose; }

UsdGeomImageable::PurposeInfo UsdGeomImageable::ComputePurposeInfo() const
{
    const TfToken authored = _GetAuthoredPurpose(GetPrim());
    if (!authored.IsEmpty()) {
        return PurposeInfo(authored, true);
    }
    const TfToken inherited = _GetInheritedPurpose(GetPrim());
    return inherited.IsEmpty() ? PurposeInfo(_GetFallbackPurpose(*this), false)
                               : PurposeInfo(inherited, true);
}

UsdGeomImageable::PurposeInfo UsdGeomImageable::ComputePurposeInfo(const PurposeInfo& parentPurposeInfo) const
{
    const TfToken authored = _GetAuthoredPurpose(GetPrim());
    if (!authored.IsEmpty()) {
        return PurposeInfo(authored, true);
    }
    return parentPurposeInfo.isInheritable ? parentPurposeInfo
                                           : PurposeInfo(_GetFallbackPurpose(*this), false);
}

UsdPrim UsdGeomImageable::ComputeProxyPrim(UsdPrim* renderPrim) const
{
    UsdPrim renderRoot;
    for (UsdPrim prim = GetPrim(); UsdGeomImageable(prim).ComputePurpose() == UsdGeomTokens->render;
         prim = prim.GetParent()) {
        renderRoot = prim;
    }
    SdfPathVector targets;
    if (!renderRoot || !UsdGeomImageable(renderRoot).GetProxyPrimRel().GetForwardedTargets(&targets)) {
        return UsdPrim();
    }
    if (targets.size() != 1) {
        if (targets.size() > 1) {
            TF_WARN("<%s> names %zu prims as its proxy; it can have one.", renderRoot.GetPath().GetText(),
                    targets.size());
        }
        return UsdPrim();
    }
    const UsdPrim proxy = GetPrim().GetStage()->GetPrimAtPath(targets[0]);
    if (!proxy) {
        return UsdPrim();
    }
    const UsdGeomImageable imageable(proxy);
    const TfToken purpose = imageable ? imageable.ComputePurpose() : _GetInheritedPurpose(proxy);
    if (purpose != UsdGeomTokens->proxy) {
        TF_WARN("<%s> is the proxy of <%s>, but its purpose is '%s' instead of 'proxy'.",
                proxy.GetPath().GetText(), renderRoot.GetPath().GetText(), purpose.GetText());
        return UsdPrim();
    }
    if (renderPrim) {
        *renderPrim = renderRoot;
    }
    return proxy;
}

bool UsdGeomImageable::SetProxyPrim(const UsdPrim& proxy) const
{
    return proxy && CreateProxyPrimRel().SetTargets({proxy.GetPath()});
}

bool UsdGeomImageable::SetProxyPrim(const UsdSchemaBase& proxy) const
{
    return proxy && SetProxyPrim(proxy.GetPrim());
}

// ---- Bounds and transforms ----

namespace {

/// A cache for the purposes that are given; none, with an error, where all are empty.
std::unique_ptr<UsdGeomBBoxCache> _MakeCache(const UsdPrim& prim, const UsdTimeCode& time,
                                             const TfTokenVector& candidates)
{
    TfTokenVector purposes;
    for (const TfToken& purpose : candidates) {
        if (!purpose.IsEmpty()) {
            purposes.push_back(purpose);
        }
    }
    if (purposes.empty()) {
        TF_CODING_ERROR("The bounds of <%s> need at least one purpose.", prim.GetPath().GetText());
        return nullptr;
    }
    return std::make_unique<UsdGeomBBoxCache>(time, purposes);
}

} // namespace

GfBBox3d UsdGeomImageable::ComputeWorldBound(const UsdTimeCode& time, const TfToken& purpose1,
                                             const TfToken& purpose2, const TfToken& purpose3,
                                             const TfToken& purpose4) const
{
    const auto cache = _MakeCache(GetPrim(), time, {purpose1, purpose2, purpose3, purpose4});
    return cache ? cache->ComputeWorldBound(GetPrim()) : GfBBox3d();
}

GfBBox3d UsdGeomImageable::ComputeLocalBound(const UsdTimeCode& time, const TfToken& purpose1,
                                             const TfToken& purpose2, const TfToken& purpose3,
                                             const TfToken& purpose4) const
{
    const auto cache = _MakeCache(GetPrim(), time, {purpose1, purpose2, purpose3, purpose4});
    return cache ? cache->ComputeLocalBound(GetPrim()) : GfBBox3d();
}

GfBBox3d UsdGeomImageable::ComputeUntransformedBound(const UsdTimeCode& time, const TfToken& purpose1,
                                                     const TfToken& purpose2, const TfToken& purpose3,
                                                     const TfToken& purpose4) const
{
    const auto cache = _MakeCache(GetPrim(), time, {purpose1, purpose2, purpose3, purpose4});
    return cache ? cache->ComputeUntransformedBound(GetPrim()) : GfBBox3d();
}

GfMatrix4d UsdGeomImageable::ComputeLocalToWorldTransform(const UsdTimeCode& time) const
{
    return UsdGeomXformCache(time).GetLocalToWorldTransform(GetPrim());
}

GfMatrix4d UsdGeomImageable::ComputeParentToWorldTransform(const UsdTimeCode& time) const
{
    return UsdGeomXformCache(time).GetParentToWorldTransform(GetPrim());
}

PXR_NAMESPACE_CLOSE_SCOPE
