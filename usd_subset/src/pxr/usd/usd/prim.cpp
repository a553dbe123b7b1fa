#include <pxr/usd/usd/prim.h>

#include "pxr/usd/usd/metadataResolver.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr const char* kPrototypeName = "__Prototype_";

} // namespace

SdfPrimSpecHandleVector UsdPrim::GetPrimStack() const
{
    SdfPrimSpecHandleVector specs;
    for (const auto& entry : GetPrimStackWithLayerOffsets()) {
        specs.push_back(entry.first);
    }
    return specs;
}

std::vector<std::pair<SdfPrimSpecHandle, SdfLayerOffset>> UsdPrim::GetPrimStackWithLayerOffsets() const
{
    std::vector<std::pair<SdfPrimSpecHandle, SdfLayerOffset>> specs;
    for (Usd_PropertySites sites(*_Prim().operator->(), TfToken()); sites; ++sites) {
        if (const SdfPrimSpecHandle spec = sites.GetLayer().GetPrimAtPath(sites.GetPath())) {
            specs.emplace_back(spec, sites.GetOffset());
        }
    }
    return specs;
}

bool UsdPrim::SetSpecifier(SdfSpecifier specifier) const
{
    return SetMetadata(SdfFieldKeys->Specifier, specifier);
}

bool UsdPrim::SetTypeName(const TfToken& typeName) const
{
    return SetMetadata(SdfFieldKeys->TypeName, typeName);
}

bool UsdPrim::ClearTypeName() const { return ClearMetadata(SdfFieldKeys->TypeName); }

bool UsdPrim::HasAuthoredTypeName() const { return HasAuthoredMetadata(SdfFieldKeys->TypeName); }

bool UsdPrim::SetActive(bool active) const { return SetMetadata(SdfFieldKeys->Active, active); }

bool UsdPrim::ClearActive() const { return ClearMetadata(SdfFieldKeys->Active); }

bool UsdPrim::HasAuthoredActive() const { return HasAuthoredMetadata(SdfFieldKeys->Active); }

bool UsdPrim::GetKind(TfToken* kind) const { return GetMetadata(SdfFieldKeys->Kind, kind); }

bool UsdPrim::SetKind(const TfToken& kind) const { return SetMetadata(SdfFieldKeys->Kind, kind); }

UsdPrim UsdPrim::GetChild(const TfToken& name) const { return GetPrimAtPath(GetPath().AppendChild(name)); }

TfTokenVector UsdPrim::GetChildrenNames() const { return GetFilteredChildrenNames(UsdPrimDefaultPredicate); }

TfTokenVector UsdPrim::GetAllChildrenNames() const
{
    return GetFilteredChildrenNames(UsdPrimAllPrimsPredicate);
}

TfTokenVector UsdPrim::GetFilteredChildrenNames(const Usd_PrimFlagsPredicate& predicate) const
{
    TfTokenVector names;
    for (const UsdPrim& child : GetFilteredChildren(predicate)) {
        names.push_back(child.GetName());
    }
    return names;
}

TfTokenVector UsdPrim::GetChildrenReorder() const
{
    TfTokenVector order;
    GetMetadata(SdfFieldKeys->PrimOrder, &order);
    return order;
}

void UsdPrim::SetChildrenReorder(const TfTokenVector& order) const
{
    SetMetadata(SdfFieldKeys->PrimOrder, order);
}

void UsdPrim::ClearChildrenReorder() const { ClearMetadata(SdfFieldKeys->PrimOrder); }

UsdPrim UsdPrim::GetParent() const
{
    if (!IsValid() && !get_pointer(_Prim())) {
        return UsdPrim();
    }
    Usd_PrimCursor cursor = _Cursor();
    cursor.MoveToParent();
    return cursor ? UsdPrim(cursor) : UsdPrim();
}

UsdPrim UsdPrim::GetNextSibling() const { return GetFilteredNextSibling(UsdPrimDefaultPredicate); }

UsdPrim UsdPrim::GetFilteredNextSibling(const Usd_PrimFlagsPredicate& predicate) const
{
    Usd_PrimCursor cursor = _Cursor();
    return cursor.MoveToNextSibling(cursor.PredicateForTraversal(predicate)) ? UsdPrim(cursor) : UsdPrim();
}

UsdPrim UsdPrim::GetPrimAtPath(const SdfPath& path) const
{
    return GetStage()->GetPrimAtPath(path.MakeAbsolutePath(GetPath()));
}

UsdObject UsdPrim::GetObjectAtPath(const SdfPath& path) const
{
    return GetStage()->GetObjectAtPath(path.MakeAbsolutePath(GetPath()));
}

UsdProperty UsdPrim::GetPropertyAtPath(const SdfPath& path) const
{
    return GetStage()->GetPropertyAtPath(path.MakeAbsolutePath(GetPath()));
}

UsdAttribute UsdPrim::GetAttributeAtPath(const SdfPath& path) const
{
    return GetStage()->GetAttributeAtPath(path.MakeAbsolutePath(GetPath()));
}

UsdRelationship UsdPrim::GetRelationshipAtPath(const SdfPath& path) const
{
    return GetStage()->GetRelationshipAtPath(path.MakeAbsolutePath(GetPath()));
}

bool UsdPrim::IsInstanceable() const
{
    bool instanceable = false;
    return GetMetadata(SdfFieldKeys->Instanceable, &instanceable) && instanceable;
}

bool UsdPrim::SetInstanceable(bool instanceable) const
{
    return SetMetadata(SdfFieldKeys->Instanceable, instanceable);
}

bool UsdPrim::ClearInstanceable() const { return ClearMetadata(SdfFieldKeys->Instanceable); }

bool UsdPrim::HasAuthoredInstanceable() const { return HasAuthoredMetadata(SdfFieldKeys->Instanceable); }

bool UsdPrim::IsPrototypePath(const SdfPath& path)
{
    return path.IsRootPrimPath() && TfStringStartsWith(path.GetName(), kPrototypeName);
}

bool UsdPrim::IsPathInPrototype(const SdfPath& path)
{
    if (path.IsEmpty() || path.IsAbsoluteRootPath() || !path.IsAbsolutePath()) {
        return false;
    }
    SdfPath top = path.GetPrimPath();
    while (!top.IsRootPrimPath()) {
        top = top.GetParentPath();
    }
    return IsPrototypePath(top);
}

bool UsdPrim::IsInPrototype() const
{
    return IsInstanceProxy() ? IsPathInPrototype(GetPrimPath()) : _Prim()->IsInPrototype();
}

UsdPrim UsdPrim::GetPrototype() const { return Usd_ObjectAccess::MakePrim(_Prim()->GetPrototype()); }

UsdPrim UsdPrim::GetPrimInPrototype() const
{
    return IsInstanceProxy() ? UsdPrim(_Prim(), SdfPath()) : UsdPrim();
}

std::vector<UsdPrim> UsdPrim::GetInstances() const
{
    std::vector<UsdPrim> instances;
    const Usd_StageImpl& stage = _Impl();
    if (const Usd_Prototype* const prototype = stage.prototypes.FindByPath(GetPath())) {
        for (const SdfPath& path : prototype->instances) {
            instances.push_back(stage.GetPrimOrProxy(path));
        }
    }
    return instances;
}

PXR_NAMESPACE_CLOSE_SCOPE
