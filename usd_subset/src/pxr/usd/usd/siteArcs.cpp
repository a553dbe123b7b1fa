#include "pxr/usd/usd/siteArcs.h"

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/tokens.h>

#include <algorithm>
#include <optional>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void warnOfExpression(const std::string& expression, const std::string& why, const SdfLayer& layer,
                      const SdfPath& path, Usd_PrimIndexer& indexer)
{
    indexer.Warn(TfStringPrintf("The expression %s was left out: %s It is written on <%s> in @%s@.",
                                expression.c_str(), why.c_str(), path.GetText(),
                                layer.GetIdentifier().c_str()));
}

// Applies the list edits of all layers, the weakest first, with items anchored to the layer that has them.
template <class ListOp, class Item, class Specs, class Anchor>
std::vector<Item> composeList(const Specs& specs, const SdfPath& path, const TfToken& field,
                              const Anchor& anchor)
{
    std::vector<Item> items;
    for (auto entry = specs.rbegin(); entry != specs.rend(); ++entry) {
        ListOp edits;
        if ((*entry)->layer->HasField(path, field, &edits)) {
            edits.ApplyOperations(&items,
                                  [&](SdfListOpType, const Item& item) { return anchor(**entry, item); });
        }
    }
    return items;
}

// References and payloads alike: items are made comparable across layers by their full asset paths, and the
// arc that each came from is found again by its item.
template <class ListOp>
std::vector<Usd_AssetArc> composeAssetArcs(const Usd_GraphNode& node, const TfToken& field,
                                           Usd_PrimIndexer& indexer)
{
    using Item = typename ListOp::ItemType;
    std::vector<std::pair<Item, Usd_AssetArc>> known;
    const auto anchor = [&](const Usd_LayerStack::Entry& entry, const Item& item) -> std::optional<Item> {
        Usd_AssetArc arc;
        arc.source = get_pointer(entry.layer);
        std::string why;
        arc.asset = node.layerStack->Evaluate(item.GetAssetPath(), &why);
        if (!why.empty()) {
            warnOfExpression(item.GetAssetPath(), why, *entry.layer, node.path, indexer);
        }
        if (arc.asset.empty() && !item.GetAssetPath().empty()) {
            return std::nullopt; // how expressions say that there is no arc
        }
        arc.fullAsset = arc.asset.empty()
                            ? std::string()
                            : SdfComputeAssetPathRelativeToLayer(SdfLayerHandle(entry.layer), arc.asset);
        arc.primPath = item.GetPrimPath();
        arc.written = item.GetLayerOffset();
        arc.offset = entry.offset;
        Item anchored = item;
        anchored.SetAssetPath(arc.fullAsset);
        known.emplace_back(anchored, arc);
        return anchored;
    };
    std::vector<Usd_AssetArc> arcs;
    for (const Item& item : composeList<ListOp, Item>(node.specs, node.path, field, anchor)) {
        // The strongest layer that names the item was looked at last.
        const auto found = std::find_if(known.rbegin(), known.rend(),
                                        [&item](const auto& entry) { return entry.first == item; });
        arcs.push_back(found->second);
    }
    return arcs;
}

std::vector<SdfPath> composePaths(const Usd_GraphNode& node, const TfToken& field)
{
    const SdfPath anchorPath = node.path.StripAllVariantSelections();
    return composeList<SdfPathListOp, SdfPath>(
        node.specs, node.path, field,
        [&anchorPath](const Usd_LayerStack::Entry&, const SdfPath& path) -> std::optional<SdfPath> {
            return path.MakeAbsolutePath(anchorPath);
        });
}

const TfTokenVector& arcFields()
{
    static const TfTokenVector fields{SdfFieldKeys->References, SdfFieldKeys->Payload,
                                      SdfFieldKeys->InheritPaths, SdfFieldKeys->Specializes,
                                      SdfFieldKeys->VariantSetNames};
    return fields;
}

} // namespace

Usd_WrittenArcs Usd_FindWrittenArcs(const Usd_GraphNode& node)
{
    Usd_WrittenArcs arcs;
    if (!node.CanContribute()) {
        return arcs;
    }
    arcs.relocates = !node.layerStack->GetRelocates().IsEmpty();
    for (const Usd_LayerStack::Entry* const entry : node.specs) {
        const auto has = [&](const TfToken& field) { return entry->layer->HasField(node.path, field); };
        arcs.references = arcs.references || has(SdfFieldKeys->References);
        arcs.payloads = arcs.payloads || has(SdfFieldKeys->Payload);
        arcs.inherits = arcs.inherits || has(SdfFieldKeys->InheritPaths);
        arcs.specializes = arcs.specializes || has(SdfFieldKeys->Specializes);
        arcs.variants = arcs.variants || has(SdfFieldKeys->VariantSetNames);
    }
    return arcs;
}

bool Usd_HasVariantsAbove(const Usd_GraphNode& node)
{
    for (SdfPath path = node.path.GetParentPath(); !path.IsEmpty() && !path.IsAbsoluteRootPath();
         path = path.GetParentPath()) {
        const bool counts = node.restrictedDepth == 0 || node.restrictedDepth > path.GetPathElementCount();
        for (const Usd_LayerStack::Entry& entry : node.layerStack->GetEntries()) {
            if (counts && entry.layer->HasField(path, SdfFieldKeys->VariantSetNames)) {
                return true;
            }
        }
    }
    return false;
}

std::vector<Usd_AssetArc> Usd_FindReferences(const Usd_GraphNode& node, Usd_PrimIndexer& indexer)
{
    return composeAssetArcs<SdfReferenceListOp>(node, SdfFieldKeys->References, indexer);
}

std::vector<Usd_AssetArc> Usd_FindPayloads(const Usd_GraphNode& node, Usd_PrimIndexer& indexer)
{
    return composeAssetArcs<SdfPayloadListOp>(node, SdfFieldKeys->Payload, indexer);
}

std::vector<SdfPath> Usd_FindInherits(const Usd_GraphNode& node)
{
    return composePaths(node, SdfFieldKeys->InheritPaths);
}

std::vector<SdfPath> Usd_FindSpecializes(const Usd_GraphNode& node)
{
    return composePaths(node, SdfFieldKeys->Specializes);
}

std::vector<std::string> Usd_FindVariantSets(const Usd_LayerStack& layerStack, const SdfPath& path)
{
    return composeList<SdfStringListOp, std::string>(
        Usd_FindSpecs(layerStack, path), path, SdfFieldKeys->VariantSetNames,
        [](const Usd_LayerStack::Entry&, const std::string& name) {
            return std::optional<std::string>(name);
        });
}

bool Usd_FindVariantSelection(const Usd_LayerStack& layerStack, const SdfPath& path, const std::string& set,
                              Usd_PrimIndexer& indexer, std::string* selection)
{
    for (const Usd_LayerStack::Entry& entry : layerStack.GetEntries()) {
        SdfVariantSelectionMap selections;
        if (!entry.layer->HasField(path, SdfFieldKeys->VariantSelection, &selections)) {
            continue;
        }
        const auto found = selections.find(set);
        if (found == selections.end()) {
            continue;
        }
        std::string why;
        *selection = layerStack.Evaluate(found->second, &why);
        if (why.empty()) {
            return true;
        }
        warnOfExpression(found->second, why, *entry.layer, path, indexer); // weaker opinions count
    }
    return false;
}

void Usd_AddSiteKinds(const SdfLayer& layer, const SdfPath& path, Usd_SiteKinds* kinds)
{
    for (const TfToken& field : layer.ListFields(path)) {
        if (std::find(arcFields().begin(), arcFields().end(), field) != arcFields().end()) {
            kinds->hasArcs = true;
        } else if (field == UsdTokens->clips) {
            kinds->hasClips = true;
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
