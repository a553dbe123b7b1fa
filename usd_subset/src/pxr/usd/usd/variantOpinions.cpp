#include "pxr/usd/usd/variantOpinions.h"

#include "pxr/usd/usd/siteArcs.h"

#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

std::vector<std::string> Usd_VariantOpinions::GetSetNames() const
{
    // The sets of each place in their own order, those of stronger places first.
    std::vector<std::string> names;
    for (const Usd_PrimIndexNode& node : _index.GetNodes()) {
        for (const std::string& name : Usd_FindVariantSets(*node.layerStack, _index.GetSitePath(node))) {
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

std::set<std::string> Usd_VariantOpinions::GetVariantNames(const std::string& setName) const
{
    std::set<std::string> names;
    for (const Usd_PrimIndexNode& node : _index.GetNodes()) {
        const SdfPath setPath = _index.GetSitePath(node).AppendVariantSelection(setName, std::string());
        for (const Usd_LayerStack::Entry& entry : node.layerStack->GetEntries()) {
            TfTokenVector variants;
            if (entry.layer->HasField(setPath, SdfChildrenKeys->VariantChildren, &variants)) {
                names.insert(variants.begin(), variants.end());
            }
        }
    }
    return names;
}

bool Usd_VariantOpinions::GetAuthoredSelection(const std::string& setName, std::string* selection) const
{
    for (const Usd_SpecSite& site : _index.GetSites()) {
        SdfVariantSelectionMap selections;
        if (site.layer->HasField(site.path, SdfFieldKeys->VariantSelection, &selections)) {
            const auto found = selections.find(setName);
            if (found != selections.end()) {
                *selection = found->second;
                return true;
            }
        }
    }
    return false;
}

std::string Usd_VariantOpinions::GetSelection(const std::string& setName) const
{
    for (const Usd_PrimIndexNode& node : _index.GetNodes()) {
        const SdfPath path = node.arc == Usd_ArcType::Variant ? _index.GetSitePath(node) : SdfPath();
        if (path.IsPrimVariantSelectionPath() && path.GetVariantSelection().first == setName) {
            return path.GetVariantSelection().second;
        }
    }
    return std::string();
}

PXR_NAMESPACE_CLOSE_SCOPE
