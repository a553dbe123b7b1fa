#include <pxr/usd/usd/property.h>

#include "pxr/usd/usd/clipSites.h"
#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <optional>

PXR_NAMESPACE_OPEN_SCOPE

SdfPropertySpecHandleVector UsdProperty::GetPropertyStack(UsdTimeCode time) const
{
    SdfPropertySpecHandleVector specs;
    for (const auto& entry : GetPropertyStackWithLayerOffsets(time)) {
        specs.push_back(entry.first);
    }
    return specs;
}

std::vector<std::pair<SdfPropertySpecHandle, SdfLayerOffset>>
UsdProperty::GetPropertyStackWithLayerOffsets(UsdTimeCode time) const
{
    std::vector<std::pair<SdfPropertySpecHandle, SdfLayerOffset>> specs;
    const auto add = [&specs](SdfLayer& layer, const SdfPath& path, const SdfLayerOffset& offset) {
        if (const SdfPropertySpecHandle spec = layer.GetPropertyAtPath(path)) {
            specs.emplace_back(spec, offset);
        }
        return false;
    };
    if (_Prim()->MayHaveOpinionsInClips() && time.IsNumeric()) {
        Usd_VisitSitesAndClips(
            *_Prim().operator->(), _PropName(),
            [&](const Usd_SpecSite& site, const SdfPath& path) {
                return add(*site.layer, path, site.offset);
            },
            [&](const Usd_ClipSet& set, const Usd_LayerStack&, const SdfPath& path,
                const SdfLayerOffset& offset) {
                const Usd_Clip& clip = set.GetSourceOf(path, time.GetValue());
                const SdfLayerHandle layer = clip.GetLayer();
                return layer && add(*layer, clip.GetPathInClip(path), offset);
            });
        return specs;
    }
    for (Usd_PropertySites sites(*_Prim().operator->(), _PropName()); sites; ++sites) {
        add(sites.GetLayer(), sites.GetPath(), sites.GetOffset());
    }
    return specs;
}

TfToken UsdProperty::GetBaseName() const
{
    const std::string& name = _PropName().GetString();
    const size_t end = name.rfind(GetNamespaceDelimiter());
    return end == std::string::npos ? _PropName() : TfToken(name.substr(end + 1));
}

TfToken UsdProperty::GetNamespace() const
{
    const std::string& name = _PropName().GetString();
    const size_t end = name.rfind(GetNamespaceDelimiter());
    return end == std::string::npos ? TfToken() : TfToken(name.substr(0, end));
}

std::vector<std::string> UsdProperty::SplitName() const
{
    return SdfPath::TokenizeIdentifier(_PropName().GetString());
}

std::string UsdProperty::GetDisplayGroup() const
{
    std::string group;
    GetMetadata(SdfFieldKeys->DisplayGroup, &group);
    return group;
}

bool UsdProperty::SetDisplayGroup(const std::string& displayGroup) const
{
    return SetMetadata(SdfFieldKeys->DisplayGroup, displayGroup);
}

bool UsdProperty::ClearDisplayGroup() const { return ClearMetadata(SdfFieldKeys->DisplayGroup); }

bool UsdProperty::HasAuthoredDisplayGroup() const { return HasAuthoredMetadata(SdfFieldKeys->DisplayGroup); }

std::vector<std::string> UsdProperty::GetNestedDisplayGroups() const
{
    return TfStringTokenize(GetDisplayGroup(), ":");
}

bool UsdProperty::SetNestedDisplayGroups(const std::vector<std::string>& nestedGroups) const
{
    return SetDisplayGroup(TfStringJoin(nestedGroups, ":"));
}

bool UsdProperty::IsCustom() const
{
    if (_Prim()->GetPrimDefinition().GetPropertyDefinition(_PropName())) {
        return false;
    }
    bool custom = false; // one opinion that says so is enough
    for (Usd_PropertySites sites(*_Prim().operator->(), _PropName()); sites && !custom; ++sites) {
        sites.GetLayer().HasField(sites.GetPath(), SdfFieldKeys->Custom, &custom);
    }
    return custom;
}

bool UsdProperty::SetCustom(bool isCustom) const { return SetMetadata(SdfFieldKeys->Custom, isCustom); }

bool UsdProperty::IsDefined() const { return IsValid(); }

bool UsdProperty::IsAuthored() const
{
    for (Usd_PropertySites sites(*_Prim().operator->(), _PropName()); sites; ++sites) {
        if (sites.GetLayer().HasSpec(sites.GetPath())) {
            return true;
        }
    }
    return false;
}

bool UsdProperty::IsAuthoredAt(const UsdEditTarget& editTarget) const
{
    return editTarget.IsValid() && editTarget.GetLayer()->HasSpec(editTarget.MapToSpecPath(GetPath()));
}

bool UsdProperty::_GetTargets(SdfSpecType specType, SdfPathVector* out) const
{
    const TfToken& field =
        specType == SdfSpecTypeAttribute ? SdfFieldKeys->ConnectionPaths : SdfFieldKeys->TargetPaths;
    struct Opinion
    {
        SdfPathListOp edits;
        SdfPath anchor;
        const Usd_PathMapping* mapping;
    };
    std::vector<Opinion> opinions;
    for (Usd_PropertySites sites(*_Prim().operator->(), _PropName()); sites; ++sites) {
        Opinion opinion{{}, sites.GetPath().GetPrimPath(), &sites.GetNode().toStage};
        if (sites.GetLayer().HasField(sites.GetPath(), field, &opinion.edits)) {
            opinions.push_back(std::move(opinion));
        }
    }
    out->clear();
    bool hasOpinions = false;
    bool hasUnmapped = false; // a path that points outside of what its arc brings in
    for (auto opinion = opinions.rbegin(); opinion != opinions.rend(); ++opinion) {
        if (!opinion->edits.HasKeys()) {
            continue;
        }
        hasOpinions = true;
        hasUnmapped = hasUnmapped && !opinion->edits.IsExplicit();
        opinion->edits.ApplyOperations(
            out, [&](SdfListOpType operation, const SdfPath& path) -> std::optional<SdfPath> {
                const SdfPath mapped = opinion->mapping->MapSourceToTarget(
                    path.MakeAbsolutePath(opinion->anchor).StripAllVariantSelections());
                hasUnmapped = hasUnmapped || (mapped.IsEmpty() && operation != SdfListOpTypeDeleted);
                return mapped.IsEmpty() ? std::nullopt : std::optional<SdfPath>(mapped);
            });
    }
    if (_Prim()->IsInPrototype()) {
        const Usd_PathMapping toInstance = _Impl().GetInstanceMapping(GetPrim());
        for (SdfPath& path : *out) {
            path = toInstance.MapSourceToTarget(path);
        }
        out->erase(std::remove(out->begin(), out->end(), SdfPath()), out->end());
    }
    return hasOpinions && !hasUnmapped;
}

SdfPath UsdProperty::_GetPathForAuthoring(const SdfPath& path, std::string* whyNot) const
{
    const SdfPath prim = GetPath().GetPrimPath();
    const UsdEditTarget& target = _Impl().editTarget;
    const SdfPath absolute = path.IsEmpty() ? path : path.MakeAbsolutePath(prim);
    if (UsdPrim::IsPathInPrototype(absolute)) {
        *whyNot = "Cannot target a prototype or an object within a prototype.";
        return SdfPath();
    }
    SdfPath mapped =
        absolute.IsEmpty() ? absolute : target.MapToSpecPath(absolute).StripAllVariantSelections();
    if (!mapped.IsEmpty() && !path.IsAbsolutePath()) {
        mapped = mapped.MakeRelativePath(target.MapToSpecPath(prim).StripAllVariantSelections());
    }
    if (mapped.IsEmpty()) {
        *whyNot = TfStringPrintf("Cannot map <%s> to layer @%s@ via stage's EditTarget", path.GetText(),
                                 target.IsValid() ? target.GetLayer()->GetIdentifier().c_str() : "");
    }
    return mapped;
}

PXR_NAMESPACE_CLOSE_SCOPE
