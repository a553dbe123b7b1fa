#include "pxr/usd/usd/metadataResolver.h"
#include "pxr/usd/usd/stageImpl.h"
#include "pxr/usd/usd/valueResolver.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/fileFormat.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/stage.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void copyMetadata(const UsdObject& from, const SdfSpecHandle& to)
{
    for (const auto& entry : from.GetAllAuthoredMetadata()) {
        if (!entry.second.IsEmpty() && entry.first != SdfFieldKeys->Specifier &&
            entry.first != SdfFieldKeys->TypeName && entry.first != SdfFieldKeys->Custom &&
            entry.first != SdfFieldKeys->Variability && entry.first != SdfFieldKeys->TargetPaths &&
            entry.first != SdfFieldKeys->ConnectionPaths) {
            to->GetLayer()->SetField(to->GetPath(), entry.first, entry.second);
        }
    }
}

void copyAttribute(const UsdAttribute& from, const SdfPrimSpecHandle& owner)
{
    const SdfAttributeSpecHandle to = SdfAttributeSpec::New(
        owner, from.GetName().GetString(), from.GetTypeName(), from.GetVariability(), from.IsCustom());
    if (!to) {
        return;
    }
    copyMetadata(from, to);
    const UsdResolveInfo atDefault = from.GetResolveInfo(UsdTimeCode::Default());
    VtValue value;
    if (atDefault.ValueIsBlocked()) {
        to->GetLayer()->SetField(to->GetPath(), SdfFieldKeys->Default, VtValue(SdfValueBlock()));
    } else if (atDefault.HasAuthoredValue() && from.Get(&value)) {
        to->GetLayer()->SetField(to->GetPath(), SdfFieldKeys->Default, value);
    }
    std::vector<double> times;
    from.GetTimeSamples(&times);
    for (const double time : times) {
        to->GetLayer()->SetTimeSample(to->GetPath(), time,
                                      from.Get(&value, time) ? value : VtValue(SdfValueBlock()));
    }
    SdfPathVector sources;
    if (from.GetConnections(&sources)) {
        to->GetConnectionPathList().ClearEditsAndMakeExplicit();
        to->GetConnectionPathList().GetExplicitItems() = sources;
    }
}

void copyRelationship(const UsdRelationship& from, const SdfPrimSpecHandle& owner)
{
    const SdfRelationshipSpecHandle to =
        SdfRelationshipSpec::New(owner, from.GetName().GetString(), from.IsCustom());
    if (!to) {
        return;
    }
    copyMetadata(from, to);
    SdfPathVector targets;
    if (from.GetTargets(&targets)) {
        to->GetTargetPathList().ClearEditsAndMakeExplicit();
        to->GetTargetPathList().GetExplicitItems() = targets;
    }
}

void copyPrim(const UsdPrim& from, const SdfLayerHandle& layer)
{
    const SdfPrimSpecHandle to =
        SdfPrimSpec::New(layer->GetPrimAtPath(from.GetPath().GetParentPath()), from.GetName().GetString(),
                         from.GetSpecifier(), from.GetTypeName().GetString());
    if (!to) {
        return;
    }
    copyMetadata(from, to);
    for (const UsdProperty& property : from.GetAuthoredProperties()) {
        if (property.Is<UsdAttribute>()) {
            copyAttribute(property.As<UsdAttribute>(), to);
        } else if (property.Is<UsdRelationship>()) {
            copyRelationship(property.As<UsdRelationship>(), to);
        }
    }
}

void addComment(const UsdStage& stage, const SdfLayerRefPtr& layer)
{
    std::string doc = layer->GetDocumentation();
    const std::string source = stage.GetRootLayer()->GetRealPath();
    if (!doc.empty()) {
        doc += "\n\n";
    }
    layer->SetDocumentation(
        doc + TfStringPrintf("Generated from Composed Stage of root layer %s\n", source.c_str()));
}

} // namespace

SdfLayerRefPtr UsdStage::Flatten(bool addSourceFileComment) const
{
    const SdfLayerRefPtr layer = SdfLayer::CreateAnonymous(".usda");
    SdfChangeBlock block;
    for (const auto& entry : GetPseudoRoot().GetAllAuthoredMetadata()) {
        layer->SetField(SdfPath::AbsoluteRootPath(), entry.first, entry.second);
    }
    if (layer->HasTimeCodesPerSecond() || GetTimeCodesPerSecond() != layer->GetTimeCodesPerSecond()) {
        layer->SetTimeCodesPerSecond(GetTimeCodesPerSecond());
    }
    for (const UsdPrim& prim :
         UsdPrimRange::Stage(UsdStagePtr(const_cast<UsdStage*>(this)), UsdPrimAllPrimsPredicate)) {
        copyPrim(prim, SdfLayerHandle(layer));
    }
    if (addSourceFileComment) {
        addComment(*this, layer);
    }
    return layer;
}

bool UsdStage::Export(const std::string& filename, bool addSourceFileComment,
                      const SdfLayer::FileFormatArguments& args) const
{
    const SdfLayerRefPtr layer = Flatten(addSourceFileComment);
    return layer && layer->Export(filename, std::string(), args);
}

bool UsdStage::ExportToString(std::string* result, bool addSourceFileComment) const
{
    const SdfLayerRefPtr layer = Flatten(addSourceFileComment);
    return layer && layer->ExportToString(result);
}

PXR_NAMESPACE_CLOSE_SCOPE
