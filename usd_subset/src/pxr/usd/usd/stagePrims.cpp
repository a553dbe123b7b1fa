#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/errorMark.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool canCreatePrim(const Usd_StageImpl& stage, const Usd_SpecEditor& editor, const SdfPath& path)
{
    if (!path.IsAbsolutePath()) {
        TF_CODING_ERROR("Path must be an absolute path: <%s>", path.GetText());
        return false;
    }
    if (!path.IsAbsoluteRootOrPrimPath()) {
        TF_CODING_ERROR("Path must be a prim path: <%s>", path.GetText());
        return false;
    }
    if (path.ContainsPrimVariantSelection()) {
        TF_CODING_ERROR("Path must not contain variant selections: <%s>", path.GetText());
        return false;
    }
    const UsdPrim prim = stage.GetPrimOrProxy(path);
    return prim ? editor.CanEdit(prim, "create prim") : editor.CanEdit(path, "create prim");
}

// Writes a defining spec where the prim is not defined or of another type; false, with an error, when
// impossible.
bool define(Usd_StageImpl& stage, const SdfPath& path, const TfToken& typeName)
{
    const UsdPrim prim = stage.GetPrimOrProxy(path);
    if (prim && prim.IsDefined() && (typeName.IsEmpty() || prim.GetTypeName() == typeName)) {
        return true;
    }
    TfErrorMark mark;
    SdfChangeBlock block;
    const SdfPrimSpecHandle spec = Usd_SpecEditor(stage).CreatePrimSpec(path);
    if (!spec) {
        if (mark.IsClean()) {
            TF_RUNTIME_ERROR("Failed to create primSpec for <%s>", path.GetText());
        }
        return false;
    }
    spec->SetSpecifier(SdfSpecifierDef);
    if (!typeName.IsEmpty()) {
        spec->SetTypeName(typeName.GetString());
    }
    return true;
}

UsdPrim definePrim(Usd_StageImpl& stage, const SdfPath& path, const TfToken& typeName)
{
    TfErrorMark mark;
    const SdfPathVector prefixes = path.GetPrefixes();
    for (const SdfPath& prefix : prefixes) {
        if (!define(stage, prefix, prefix == path ? typeName : TfToken())) {
            return UsdPrim();
        }
        const UsdPrim prim = stage.GetPrimOrProxy(prefix);
        if (!prim || !prim.IsDefined()) {
            if (mark.IsClean()) {
                TF_RUNTIME_ERROR("Failed to define UsdPrim <%s>", prefix.GetText());
            }
            return prefix == path ? prim : UsdPrim();
        }
    }
    return stage.GetPrimOrProxy(path);
}

} // namespace

UsdPrim UsdStage::OverridePrim(const SdfPath& path)
{
    const Usd_SpecEditor editor(*_impl);
    if (!canCreatePrim(*_impl, editor, path)) {
        return UsdPrim();
    }
    if (const UsdPrim prim = GetPrimAtPath(path)) {
        return prim;
    }
    TfErrorMark mark;
    bool created = false;
    {
        SdfChangeBlock block;
        created = static_cast<bool>(editor.CreatePrimSpec(path));
    }
    if (!created && mark.IsClean()) {
        TF_RUNTIME_ERROR("Failed to create PrimSpec for <%s>", path.GetText());
    }
    return GetPrimAtPath(path);
}

UsdPrim UsdStage::DefinePrim(const SdfPath& path, const TfToken& typeName)
{
    if (!canCreatePrim(*_impl, Usd_SpecEditor(*_impl), path)) {
        return UsdPrim();
    }
    return path.IsAbsoluteRootPath() ? GetPseudoRoot() : definePrim(*_impl, path, typeName);
}

UsdPrim UsdStage::CreateClassPrim(const SdfPath& rootPrimPath)
{
    if (_impl->editTarget.GetMapFunction().IsIdentity() && !HasLocalLayer(_impl->editTarget.GetLayer())) {
        TF_CODING_ERROR("Must create classes in local LayerStack");
        return UsdPrim();
    }
    if (!canCreatePrim(*_impl, Usd_SpecEditor(*_impl), rootPrimPath)) {
        return UsdPrim();
    }
    UsdPrim prim = GetPrimAtPath(rootPrimPath);
    if (prim && prim.IsDefined() && prim.GetSpecifier() != SdfSpecifierClass) {
        TF_RUNTIME_ERROR("Non-class prim already exists at <%s>", rootPrimPath.GetText());
        return UsdPrim();
    }
    if (!prim || !prim.IsAbstract()) {
        prim = definePrim(*_impl, rootPrimPath, TfToken());
        if (prim) {
            prim.SetSpecifier(SdfSpecifierClass);
        }
    }
    return prim;
}

bool UsdStage::RemovePrim(const SdfPath& path)
{
    const SdfPrimSpecHandle spec = _impl->editTarget.GetPrimSpecForScenePath(path);
    const SdfPrimSpecHandle parent = spec ? spec->GetRealNameParent() : SdfPrimSpecHandle();
    return parent && parent->RemoveNameChild(spec);
}

PXR_NAMESPACE_CLOSE_SCOPE
