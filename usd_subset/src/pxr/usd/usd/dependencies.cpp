#include "pxr/usd/usd/dependencies.h"

PXR_NAMESPACE_OPEN_SCOPE

void Usd_Dependencies::Add(const SdfPath& prim, const Usd_LayerStackPtr& layerStack, const SdfPath& site)
{
    const auto [sites, isNew] = _sites.try_emplace(layerStack);
    if (isNew) {
        _AddStack(layerStack);
    }
    if (sites->second[site].insert(prim).second) {
        _byPrim[prim].emplace_back(layerStack, site);
    }
}

void Usd_Dependencies::RemoveBelow(const SdfPath& prim)
{
    auto entry = _byPrim.lower_bound(prim);
    while (entry != _byPrim.end() && entry->first.HasPrefix(prim)) {
        for (const auto& site : entry->second) {
            _Sites& sites = _sites[site.first];
            const auto prims = sites.find(site.second);
            prims->second.erase(entry->first);
            if (prims->second.empty()) {
                sites.erase(prims);
            }
            if (sites.empty()) {
                _RemoveStack(site.first);
                _sites.erase(site.first);
            }
        }
        entry = _byPrim.erase(entry);
    }
}

void Usd_Dependencies::_AddStack(const Usd_LayerStackPtr& layerStack)
{
    for (const Usd_LayerStack::Entry& entry : layerStack->GetEntries()) {
        _stacks[get_pointer(entry.layer)].insert(layerStack);
    }
}

void Usd_Dependencies::_RemoveStack(const Usd_LayerStackPtr& layerStack)
{
    for (const Usd_LayerStack::Entry& entry : layerStack->GetEntries()) {
        const auto stacks = _stacks.find(get_pointer(entry.layer));
        if (stacks != _stacks.end() && stacks->second.erase(layerStack) && stacks->second.empty()) {
            _stacks.erase(stacks);
        }
    }
}

void Usd_Dependencies::Clear()
{
    _stacks.clear();
    _sites.clear();
    _byPrim.clear();
}

void Usd_Dependencies::FindAffected(const SdfLayer* layer, const SdfPath& path, bool withBelow,
                                    std::set<SdfPath>* affected) const
{
    const auto stacks = _stacks.find(layer);
    if (stacks == _stacks.end()) {
        return;
    }
    for (const Usd_LayerStackPtr& stack : stacks->second) {
        const _Sites& sites = _sites.find(stack)->second;
        for (SdfPath prefix = path.GetPrimPath(); prefix.IsPrimPath(); prefix = prefix.GetParentPath()) {
            const auto found = sites.find(prefix);
            if (found != sites.end()) {
                for (const SdfPath& prim : found->second) {
                    affected->insert(path.ReplacePrefix(prefix, prim));
                }
            }
        }
        for (auto below = sites.upper_bound(path);
             withBelow && below != sites.end() && below->first.HasPrefix(path); ++below) {
            affected->insert(below->second.begin(), below->second.end());
        }
    }
}

std::set<SdfPath> Usd_Dependencies::FindPrims(const SdfLayer* layer) const
{
    std::set<SdfPath> prims;
    const auto stacks = _stacks.find(layer);
    if (stacks != _stacks.end()) {
        for (const Usd_LayerStackPtr& stack : stacks->second) {
            for (const auto& site : _sites.find(stack)->second) {
                prims.insert(site.second.begin(), site.second.end());
            }
        }
    }
    return prims;
}

bool Usd_Dependencies::HasLayer(const SdfLayer* layer) const { return _stacks.count(layer) != 0; }

void Usd_Dependencies::CollectLayers(std::set<SdfLayerRefPtr>* layers) const
{
    for (const auto& entry : _sites) {
        for (const Usd_LayerStack::Entry& each : entry.first->GetEntries()) {
            layers->insert(each.layer);
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
