#include "pxr/usd/usd/dependencies.h"

PXR_NAMESPACE_OPEN_SCOPE

void Usd_Dependencies::Add(const SdfPath& prim, const Usd_LayerStackPtr& layerStack, const SdfPath& site)
{
    if (_sites[layerStack][site].insert(prim).second) {
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
                _sites.erase(site.first);
            }
        }
        entry = _byPrim.erase(entry);
    }
}

void Usd_Dependencies::Clear()
{
    _sites.clear();
    _byPrim.clear();
}

void Usd_Dependencies::FindAffected(const SdfLayer* layer, const SdfPath& path, bool withBelow,
                                    std::set<SdfPath>* affected) const
{
    for (const auto& entry : _sites) {
        if (!entry.first->HasLayer(layer)) {
            continue;
        }
        const _Sites& sites = entry.second;
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
    for (const auto& entry : _sites) {
        if (entry.first->HasLayer(layer)) {
            for (const auto& site : entry.second) {
                prims.insert(site.second.begin(), site.second.end());
            }
        }
    }
    return prims;
}

bool Usd_Dependencies::HasLayer(const SdfLayer* layer) const
{
    for (const auto& entry : _sites) {
        if (entry.first->HasLayer(layer)) {
            return true;
        }
    }
    return false;
}

void Usd_Dependencies::CollectLayers(std::set<SdfLayerRefPtr>* layers) const
{
    for (const auto& entry : _sites) {
        for (const Usd_LayerStack::Entry& each : entry.first->GetEntries()) {
            layers->insert(each.layer);
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
