#include "pxr/usd/usd/primIndex.h"

#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using NameSet = std::unordered_set<TfToken, TfToken::HashFunctor>;

// Moves names of children as the relocates of a layer stack say of the prim at a path. Names that something
// was moved away from can be used no more; they are collected.
void relocateNames(const Usd_Relocates& relocates, const SdfPath& path, TfTokenVector* names,
                   NameSet* prohibited)
{
    std::map<TfToken, TfToken> renamed;
    const auto& targets = relocates.GetTargets();
    for (auto each = targets.lower_bound(path); each != targets.end() && each->first.HasPrefix(path);
         ++each) {
        if (each->first.GetParentPath() == path) {
            const bool stays = each->second.GetParentPath() == path;
            renamed[each->first.GetNameToken()] = stays ? each->second.GetNameToken() : TfToken();
            prohibited->insert(each->first.GetNameToken());
        }
    }
    NameSet known(names->begin(), names->end());
    std::set<TfToken> added;
    const auto& sources = relocates.GetSources();
    for (auto each = sources.lower_bound(path); each != sources.end() && each->first.HasPrefix(path);
         ++each) {
        if (each->first.GetParentPath() == path && each->second.GetParentPath() != path &&
            !known.count(each->first.GetNameToken())) {
            added.insert(each->first.GetNameToken());
        }
    }
    TfTokenVector result;
    for (const TfToken& name : *names) {
        const auto found = renamed.find(name);
        if (found == renamed.end()) {
            result.push_back(name);
            continue;
        }
        known.erase(name);
        if (!found->second.IsEmpty() && known.insert(found->second).second) {
            result.push_back(found->second);
        }
    }
    result.insert(result.end(), added.begin(), added.end());
    *names = std::move(result);
}

} // namespace

const std::shared_ptr<const Usd_PrimIndex::Graph>& Usd_PrimIndex::_GetEmptyGraph()
{
    static const auto* const empty = new std::shared_ptr<const Graph>(std::make_shared<Graph>());
    return *empty;
}

void Usd_PrimIndex::_AddChildNames(std::vector<Usd_SpecSite>::const_reverse_iterator first,
                                   std::vector<Usd_SpecSite>::const_reverse_iterator last,
                                   TfTokenVector* names) const
{
    NameSet known(names->begin(), names->end());
    TfTokenVector found;
    for (auto site = first; site != last; ++site) {
        if (site->layer->HasField(site->path, SdfChildrenKeys->PrimChildren, &found)) {
            for (const TfToken& name : found) {
                if (known.insert(name).second) {
                    names->push_back(name);
                }
            }
        }
        if (site->layer->HasField(site->path, SdfFieldKeys->PrimOrder, &found)) {
            SdfApplyListOrdering(names, found);
        }
    }
}

SdfPath Usd_PrimIndex::GetSitePath(const Usd_PrimIndexNode& node) const
{
    if (_graph->path == _path) {
        return node.path;
    }
    return _graph->path.IsAbsoluteRootPath() ? _path
                                             : node.path.AppendPath(_path.MakeRelativePath(_graph->path));
}

std::vector<bool> Usd_PrimIndex::FindContributingNodes() const
{
    const Usd_PrimIndexNodes& nodes = GetNodes();
    std::vector<bool> contributes(nodes.size(), false);
    for (const Usd_SpecSite& site : _sites) {
        contributes[site.node] = true;
    }
    for (size_t i = 0; i != nodes.size(); ++i) {
        if (i == 0 || contributes[i] || IsDirect(nodes[i])) {
            for (auto above = static_cast<std::int32_t>(i); above >= 0;
                 above = nodes[static_cast<size_t>(above)].parent) {
                contributes[static_cast<size_t>(above)] = true;
            }
        }
    }
    for (size_t i = 0; i != nodes.size(); ++i) {
        contributes[i] = contributes[i] && !nodes[i].isInert && !nodes[i].isCulled;
    }
    return contributes;
}

TfTokenVector Usd_PrimIndex::ComputeChildNames() const
{
    TfTokenVector names;
    if (!_graph->hasRelocates) {
        _AddChildNames(_sites.rbegin(), _sites.rend(), &names);
        return names;
    }
    NameSet prohibited;
    auto site = _sites.rbegin();
    for (size_t i = _graph->nodes.size(); i-- > 0;) {
        const Usd_PrimIndexNode& node = _graph->nodes[i];
        if (node.isInert || node.isCulled) {
            continue;
        }
        const Usd_Relocates& relocates = node.layerStack->GetRelocates();
        if (!relocates.IsEmpty()) {
            relocateNames(relocates, GetSitePath(node), &names, &prohibited);
        }
        const auto end =
            std::find_if(site, _sites.rend(), [i](const Usd_SpecSite& each) { return each.node != i; });
        _AddChildNames(site, end, &names);
        site = end;
    }
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&](const TfToken& name) { return prohibited.count(name) != 0; }),
                names.end());
    return names;
}

PXR_NAMESPACE_CLOSE_SCOPE
