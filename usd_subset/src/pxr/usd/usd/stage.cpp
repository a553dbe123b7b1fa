#include <pxr/usd/usd/stage.h>

#include "pxr/usd/usd/changeProcessor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>

#include <mutex>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::mutex s_variantFallbacksMutex;

PcpVariantFallbackMap& variantFallbacks()
{
    static PcpVariantFallbackMap fallbacks;
    return fallbacks;
}

} // namespace

UsdStage::UsdStage() = default;
UsdStage::~UsdStage() = default;

PcpVariantFallbackMap UsdStage::GetGlobalVariantFallbacks()
{
    const std::lock_guard<std::mutex> lock(s_variantFallbacksMutex);
    return variantFallbacks();
}

void UsdStage::SetGlobalVariantFallbacks(const PcpVariantFallbackMap& fallbacks)
{
    const std::lock_guard<std::mutex> lock(s_variantFallbacksMutex);
    variantFallbacks() = fallbacks;
}

UsdPrim UsdStage::GetPseudoRoot() const { return Usd_ObjectAccess::MakePrim(_impl->prims.GetPseudoRoot()); }

UsdPrim UsdStage::GetDefaultPrim() const
{
    const SdfPath path = _impl->rootLayer->GetDefaultPrimAsPath();
    return path.IsEmpty() ? UsdPrim() : GetPrimAtPath(path);
}

void UsdStage::SetDefaultPrim(const UsdPrim& prim)
{
    if (prim) {
        _impl->rootLayer->SetDefaultPrim(prim.GetPath().IsRootPrimPath() ? prim.GetName()
                                                                         : prim.GetPath().GetAsToken());
    }
}

void UsdStage::ClearDefaultPrim() { _impl->rootLayer->ClearDefaultPrim(); }

bool UsdStage::HasDefaultPrim() const { return _impl->rootLayer->HasDefaultPrim(); }

UsdPrim UsdStage::GetPrimAtPath(const SdfPath& path) const
{
    return path.IsAbsolutePath() ? _impl->GetPrimOrProxy(path) : UsdPrim();
}

UsdObject UsdStage::GetObjectAtPath(const SdfPath& path) const
{
    if (path.IsAbsoluteRootOrPrimPath()) {
        return GetPrimAtPath(path);
    }
    return GetPropertyAtPath(path);
}

UsdProperty UsdStage::GetPropertyAtPath(const SdfPath& path) const
{
    if (!path.IsAbsolutePath() || !path.IsPrimPropertyPath()) {
        return UsdProperty();
    }
    const UsdPrim prim = GetPrimAtPath(path.GetPrimPath());
    return prim ? prim.GetProperty(path.GetNameToken()) : UsdProperty();
}

UsdAttribute UsdStage::GetAttributeAtPath(const SdfPath& path) const
{
    return GetPropertyAtPath(path).As<UsdAttribute>();
}

UsdRelationship UsdStage::GetRelationshipAtPath(const SdfPath& path) const
{
    return GetPropertyAtPath(path).As<UsdRelationship>();
}

UsdPrimRange UsdStage::Traverse() { return Traverse(UsdPrimDefaultPredicate); }

UsdPrimRange UsdStage::Traverse(const Usd_PrimFlagsPredicate& predicate)
{
    return UsdPrimRange::Stage(UsdStagePtr(this), predicate);
}

UsdPrimRange UsdStage::TraverseAll() { return Traverse(UsdPrimAllPrimsPredicate); }

std::vector<UsdPrim> UsdStage::GetPrototypes() const
{
    std::vector<UsdPrim> prims;
    for (const Usd_Prototype* prototype : _impl->prototypes.GetAll()) {
        prims.push_back(Usd_ObjectAccess::MakePrim(_impl->prims.Find(prototype->path)));
    }
    return prims;
}

void UsdStage::SetInterpolationType(UsdInterpolationType interpolationType)
{
    if (_impl->interpolation != interpolationType) {
        _impl->interpolation = interpolationType;
        Usd_ChangeProcessor(*_impl).SendResyncOfAll();
    }
}

UsdInterpolationType UsdStage::GetInterpolationType() const { return _impl->interpolation; }

PXR_NAMESPACE_CLOSE_SCOPE
