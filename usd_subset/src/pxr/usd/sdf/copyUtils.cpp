#include "pxr/usd/sdf/childPaths.h"
#include "pxr/usd/sdf/specEdit.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/copyUtils.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/schema.h>

#include <optional>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

struct CopiedSpec
{
    SdfPath path;
    SdfSpecType type;
    std::vector<std::pair<TfToken, VtValue>> fields;
};

// Takes down the spec and everything below it, parents before their children.
std::vector<CopiedSpec> takeDown(const SdfLayerHandle& layer, const SdfPath& root)
{
    std::vector<CopiedSpec> specs;
    SdfPathVector waiting = {root};
    while (!waiting.empty()) {
        CopiedSpec spec{waiting.back(), layer->GetSpecType(waiting.back()), {}};
        waiting.pop_back();
        SdfPathVector children;
        for (const TfToken& field : layer->ListFields(spec.path)) {
            const VtValue value = layer->GetField(spec.path, field);
            if (layer->GetSchema().HoldsChildren(field)) {
                Sdf_AppendChildPaths(spec.path, field, value, &children);
            } else {
                spec.fields.emplace_back(field, value);
            }
        }
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
        specs.push_back(std::move(spec));
    }
    return specs;
}

// The prim or property that a spec's path means to paths that point at it, which know no variants.
SdfPath asTarget(const SdfPath& path) { return path.StripAllVariantSelections(); }

// Moves the paths in a value that point into the source along to the destination.
VtValue moveAlong(const VtValue& value, const SdfPath& source, const SdfPath& destination)
{
    const SdfPath from = asTarget(source.GetPrimPath());
    const SdfPath to = asTarget(destination.GetPrimPath());
    const auto movePath = [&](const SdfPath& path) { return path.ReplacePrefix(from, to); };
    const auto moveArc = [&](auto arc) {
        if (arc.GetAssetPath().empty() && !arc.GetPrimPath().IsEmpty()) {
            arc.SetPrimPath(movePath(arc.GetPrimPath()));
        }
        return std::optional<decltype(arc)>(arc);
    };
    if (value.IsHolding<SdfPathListOp>()) {
        SdfPathListOp op = value.UncheckedGet<SdfPathListOp>();
        op.ModifyOperations([&](const SdfPath& path) { return std::optional<SdfPath>(movePath(path)); });
        return VtValue(op);
    }
    if (value.IsHolding<SdfReferenceListOp>()) {
        SdfReferenceListOp op = value.UncheckedGet<SdfReferenceListOp>();
        op.ModifyOperations([&](const SdfReference& arc) { return moveArc(arc); });
        return VtValue(op);
    }
    if (value.IsHolding<SdfPayloadListOp>()) {
        SdfPayloadListOp op = value.UncheckedGet<SdfPayloadListOp>();
        op.ModifyOperations([&](const SdfPayload& arc) { return moveArc(arc); });
        return VtValue(op);
    }
    if (value.IsHolding<SdfRelocatesMap>()) {
        SdfRelocatesMap moved;
        for (const auto& relocate : value.UncheckedGet<SdfRelocatesMap>()) {
            moved[movePath(relocate.first)] = movePath(relocate.second);
        }
        return VtValue(moved);
    }
    return value;
}

// The kind of spec that a path of the destination's kind holds.
SdfSpecType typeAt(const SdfPath& path, SdfSpecType sourceType)
{
    if (path.IsPrimVariantSelectionPath()) {
        return path.GetVariantSelection().second.empty() ? SdfSpecTypeVariantSet : SdfSpecTypeVariant;
    }
    const bool isProperty = sourceType == SdfSpecTypeAttribute || sourceType == SdfSpecTypeRelationship;
    return path.IsPropertyPath() && isProperty ? sourceType
           : path.IsPrimPath()                 ? SdfSpecTypePrim
                                               : SdfSpecTypeUnknown;
}

bool isPrimOrVariant(SdfSpecType type) { return type == SdfSpecTypePrim || type == SdfSpecTypeVariant; }

bool isInert(const CopiedSpec& spec)
{
    for (const auto& field : spec.fields) {
        if ((field.first == SdfFieldKeys->Specifier && field.second != VtValue(SdfSpecifierOver)) ||
            (field.first == SdfFieldKeys->TypeName && spec.type == SdfSpecTypePrim) ||
            (field.first == SdfFieldKeys->Custom && field.second == VtValue(true))) {
            return false;
        }
    }
    return true;
}

} // namespace

bool SdfCopySpec(const SdfLayerHandle& srcLayer, const SdfPath& srcPath, const SdfLayerHandle& dstLayer,
                 const SdfPath& dstPath)
{
    const auto refuse = [&](const char* why) {
        TF_CODING_ERROR("Cannot copy <%s> to <%s>: %s", srcPath.GetText(), dstPath.GetText(), why);
        return false;
    };
    if (!srcLayer || !dstLayer) {
        return refuse("a layer is invalid");
    }
    const SdfSpecType sourceType = srcLayer->GetSpecType(srcPath);
    if (sourceType == SdfSpecTypeUnknown || srcPath.IsAbsoluteRootPath()) {
        return refuse("there is no prim, variant or property at the source");
    }
    const SdfSpecType targetType = typeAt(dstPath, sourceType);
    if (targetType != sourceType && !(isPrimOrVariant(sourceType) && isPrimOrVariant(targetType))) {
        return refuse("the two paths are of different kinds");
    }
    if (!dstLayer->HasSpec(Sdf_ListingParentOf(dstPath))) {
        return refuse("the parent of the destination does not exist");
    }
    if (!dstLayer->PermissionToEdit()) {
        return refuse("the destination's layer is not editable");
    }
    if (srcLayer == dstLayer && srcPath == dstPath) {
        return true;
    }
    const std::vector<CopiedSpec> specs = takeDown(srcLayer, srcPath);
    SdfChangeBlock block;
    if (dstLayer->HasSpec(dstPath)) {
        Sdf_LayerEdit::DeleteSpec(dstLayer, dstPath);
    }
    for (const CopiedSpec& spec : specs) {
        const SdfPath path = spec.path.ReplacePrefix(srcPath, dstPath, /* fixTargetPaths = */ false);
        if (!Sdf_LayerEdit::CreateSpec(dstLayer, path, spec.path == srcPath ? targetType : spec.type,
                                       isInert(spec))) {
            return false;
        }
        for (const auto& field : spec.fields) {
            dstLayer->SetField(path, field.first, moveAlong(field.second, srcPath, dstPath));
        }
    }
    return true;
}

PXR_NAMESPACE_CLOSE_SCOPE
