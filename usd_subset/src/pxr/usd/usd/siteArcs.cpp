#include "pxr/usd/usd/siteArcs.h"

#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/payload.h>
#include <pxr/usd/sdf/reference.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <optional>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Applies the list edits of all layers, the weakest first, with items anchored to the layer that has them.
template <class ListOp, class Item, class Anchor>
std::vector<Item> composeList(const Usd_GraphNode& site, const TfToken& field, const Anchor& anchor)
{
    std::vector<Item> items;
    for (auto entry = site.specs.rbegin(); entry != site.specs.rend(); ++entry) {
        ListOp edits;
        if ((*entry)->layer->HasField(site.path, field, &edits)) {
            edits.ApplyOperations(&items,
                                  [&](SdfListOpType, const Item& item) { return anchor(**entry, item); });
        }
    }
    return items;
}

// References and payloads alike: items are made comparable across layers by their full asset paths, and the
// arc that each came from is found again by its item.
template <class ListOp>
std::vector<Usd_AssetArc> composeAssetArcs(const Usd_GraphNode& site, const TfToken& field)
{
    using Item = typename ListOp::ItemType;
    std::vector<std::pair<Item, Usd_AssetArc>> known;
    const auto anchor = [&](const Usd_LayerStack::Entry& entry, const Item& item) -> std::optional<Item> {
        Usd_AssetArc arc;
        arc.source = get_pointer(entry.layer);
        arc.asset = item.GetAssetPath();
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
    for (const Item& item : composeList<ListOp, Item>(site, field, anchor)) {
        // The strongest layer that names the item was looked at last.
        const auto found = std::find_if(known.rbegin(), known.rend(),
                                        [&item](const auto& entry) { return entry.first == item; });
        arcs.push_back(found->second);
    }
    return arcs;
}

std::vector<SdfPath> composePaths(const Usd_GraphNode& site, const TfToken& field)
{
    const SdfPath anchorPath = site.path.StripAllVariantSelections();
    return composeList<SdfPathListOp, SdfPath>(
        site, field,
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

Usd_SiteArcs::Usd_SiteArcs(const Usd_GraphNode& site)
    : references(composeAssetArcs<SdfReferenceListOp>(site, SdfFieldKeys->References)),
      payloads(composeAssetArcs<SdfPayloadListOp>(site, SdfFieldKeys->Payload)),
      inherits(composePaths(site, SdfFieldKeys->InheritPaths)),
      specializes(composePaths(site, SdfFieldKeys->Specializes)),
      variantSets(composeList<SdfStringListOp, std::string>(
          site, SdfFieldKeys->VariantSetNames, [](const Usd_LayerStack::Entry&, const std::string& name) {
              return std::optional<std::string>(name);
          }))
{}

bool Usd_HasArcs(const SdfLayer& layer, const SdfPath& path)
{
    for (const TfToken& field : layer.ListFields(path)) {
        if (std::find(arcFields().begin(), arcFields().end(), field) != arcFields().end()) {
            return true;
        }
    }
    return false;
}

PXR_NAMESPACE_CLOSE_SCOPE
