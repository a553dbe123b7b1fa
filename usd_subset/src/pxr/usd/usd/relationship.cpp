#include <pxr/usd/usd/relationship.h>

#include "pxr/usd/usd/listEdits.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

bool UsdRelationship::AddTarget(const SdfPath& target, UsdListPosition position) const
{
    std::string why;
    const SdfPath path = _GetPathForAuthoring(target, &why);
    if (path.IsEmpty()) {
        TF_CODING_ERROR("Cannot add target <%s> to relationship <%s>: %s", target.GetText(),
                        GetPath().GetText(), why.c_str());
        return false;
    }
    SdfChangeBlock block;
    const SdfRelationshipSpecHandle spec = Usd_SpecEditor(_Impl()).CreateRelationshipSpec(*this, true);
    if (!spec) {
        return false;
    }
    Usd_InsertListItem(spec->GetTargetPathList(), path, position);
    return true;
}

bool UsdRelationship::RemoveTarget(const SdfPath& target) const
{
    std::string why;
    const SdfPath path = _GetPathForAuthoring(target, &why);
    if (path.IsEmpty()) {
        TF_CODING_ERROR("Cannot remove target <%s> from relationship <%s>: %s", target.GetText(),
                        GetPath().GetText(), why.c_str());
        return false;
    }
    SdfChangeBlock block;
    const SdfRelationshipSpecHandle spec = Usd_SpecEditor(_Impl()).CreateRelationshipSpec(*this, true);
    if (!spec) {
        return false;
    }
    spec->GetTargetPathList().Remove(path);
    return true;
}

bool UsdRelationship::SetTargets(const SdfPathVector& targets) const
{
    SdfPathVector paths;
    for (const SdfPath& target : targets) {
        std::string why;
        paths.push_back(_GetPathForAuthoring(target, &why));
        if (paths.back().IsEmpty()) {
            TF_CODING_ERROR("Cannot set target <%s> on relationship <%s>: %s", target.GetText(),
                            GetPath().GetText(), why.c_str());
            return false;
        }
    }
    SdfChangeBlock block;
    const SdfRelationshipSpecHandle spec = Usd_SpecEditor(_Impl()).CreateRelationshipSpec(*this, true);
    if (!spec) {
        return false;
    }
    auto list = spec->GetTargetPathList();
    list.ClearEditsAndMakeExplicit();
    list.GetExplicitItems() = paths;
    return true;
}

bool UsdRelationship::ClearTargets(bool removeSpec) const
{
    SdfChangeBlock block;
    const Usd_SpecEditor editor(_Impl());
    const SdfRelationshipSpecHandle spec = editor.CreateRelationshipSpec(*this, true);
    if (!spec) {
        return false;
    }
    if (removeSpec) {
        return editor.RemoveProperty(GetPath());
    }
    spec->GetTargetPathList().ClearEdits();
    return true;
}

bool UsdRelationship::GetTargets(SdfPathVector* targets) const
{
    return _GetTargets(SdfSpecTypeRelationship, targets);
}

bool UsdRelationship::GetForwardedTargets(SdfPathVector* targets) const
{
    targets->clear();
    SdfPathSet visited;
    SdfPathSet unique;
    bool hasErrors = false;
    return _GetForwardedTargets(&visited, &unique, targets, &hasErrors) && !hasErrors;
}

bool UsdRelationship::_GetForwardedTargets(SdfPathSet* visited, SdfPathSet* unique, SdfPathVector* targets,
                                           bool* hasErrors) const
{
    SdfPathVector own;
    const bool hasOpinion = GetTargets(&own);
    // A target that is written but cannot be reached spoils the whole answer.
    *hasErrors = *hasErrors || (!hasOpinion && HasAuthoredTargets());
    if (own.empty()) {
        return hasOpinion;
    }
    bool succeeded = false;
    for (const SdfPath& target : own) {
        const UsdRelationship next =
            target.IsPrimPropertyPath() ? GetStage()->GetRelationshipAtPath(target) : UsdRelationship();
        if (next) {
            if (visited->insert(target).second) {
                succeeded = next._GetForwardedTargets(visited, unique, targets, hasErrors) || succeeded;
            }
            continue;
        }
        succeeded = true;
        if (unique->insert(target).second) {
            targets->push_back(target);
        }
    }
    return succeeded;
}

bool UsdRelationship::HasAuthoredTargets() const { return HasAuthoredMetadata(SdfFieldKeys->TargetPaths); }

PXR_NAMESPACE_CLOSE_SCOPE
