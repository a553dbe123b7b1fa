#include "pxr/usd/usd/variantOpinions.h"

#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

std::vector<std::string> Usd_VariantOpinions::GetSetNames() const
{
    // The sets of each place in their own order, those of stronger places first.
    std::vector<std::string> names;
    const std::vector<Usd_SpecSite>& sites = _index.GetSites();
    for (auto first = sites.begin(); first != sites.end();) {
        const auto last = std::find_if(
            first, sites.end(), [first](const Usd_SpecSite& site) { return site.node != first->node; });
        std::vector<std::string> here;
        for (auto site = last; site != first;) {
            --site;
            SdfStringListOp edits;
            if (site->layer->HasField(site->path, SdfFieldKeys->VariantSetNames, &edits)) {
                edits.ApplyOperations(&here);
            }
        }
        for (const std::string& name : here) {
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
        }
        first = last;
    }
    return names;
}

std::set<std::string> Usd_VariantOpinions::GetVariantNames(const std::string& setName) const
{
    std::set<std::string> names;
    for (const Usd_SpecSite& site : _index.GetSites()) {
        const SdfPath setPath = site.path.AppendVariantSelection(setName, std::string());
        TfTokenVector variants;
        if (site.layer->HasField(setPath, SdfChildrenKeys->VariantChildren, &variants)) {
            names.insert(variants.begin(), variants.end());
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
    for (const Usd_SpecSite& site : _index.GetSites()) {
        if (site.path.IsPrimVariantSelectionPath() && site.path.GetVariantSelection().first == setName) {
            return site.path.GetVariantSelection().second;
        }
    }
    // Selected, but without anything in it.
    const std::vector<std::string> sets = GetSetNames();
    std::string selection;
    return std::count(sets.begin(), sets.end(), setName) && GetAuthoredSelection(setName, &selection)
               ? selection
               : std::string();
}

PXR_NAMESPACE_CLOSE_SCOPE
