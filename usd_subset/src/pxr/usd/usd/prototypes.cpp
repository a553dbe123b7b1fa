#include "pxr/usd/usd/prototypes.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/types.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

void Usd_Prototypes::Register(const SdfPath& instance, const Usd_PrimIndex& index)
{
    const std::string key = _MakeKey(index);
    std::unique_ptr<Usd_Prototype>& prototype = _prototypes[key];
    if (!prototype) {
        prototype = std::make_unique<Usd_Prototype>();
        prototype->key = key;
        prototype->path = SdfPath(TfStringPrintf("/__Prototype_%zu", ++_lastNumber));
        _byPath[prototype->path] = prototype.get();
    }
    if (prototype->source.IsEmpty()) {
        prototype->source = instance;
        _MakeStale(prototype.get());
    }
    prototype->instances.insert(instance);
    _byInstance[instance] = prototype.get();
}

void Usd_Prototypes::UnregisterBelow(const SdfPath& path)
{
    auto entry = _byInstance.lower_bound(path);
    while (entry != _byInstance.end() && entry->first.HasPrefix(path)) {
        Usd_Prototype& prototype = *entry->second;
        prototype.instances.erase(entry->first);
        if (prototype.source == entry->first) {
            prototype.source = SdfPath();
            _MakeStale(&prototype);
        }
        entry = _byInstance.erase(entry);
    }
}

const Usd_Prototype* Usd_Prototypes::FindForInstance(const SdfPath& instance) const
{
    const auto found = _byInstance.find(instance);
    return found == _byInstance.end() ? nullptr : found->second;
}

const Usd_Prototype* Usd_Prototypes::FindByPath(const SdfPath& path) const
{
    const auto found = _byPath.find(path);
    return found == _byPath.end() ? nullptr : found->second;
}

void Usd_Prototypes::_MakeStale(Usd_Prototype* prototype)
{
    prototype->isStale = true;
    _stale.push_back(prototype->key);
}

std::vector<const Usd_Prototype*> Usd_Prototypes::GetAll() const
{
    std::vector<const Usd_Prototype*> all;
    for (const auto& entry : _prototypes) {
        all.push_back(entry.second.get());
    }
    return all;
}

SdfPathVector Usd_Prototypes::TakeUnused()
{
    SdfPathVector paths;
    for (auto entry = _prototypes.begin(); entry != _prototypes.end();) {
        if (entry->second->instances.empty()) {
            paths.push_back(entry->second->path);
            _byPath.erase(entry->second->path);
            entry = _prototypes.erase(entry);
        } else {
            ++entry;
        }
    }
    return paths;
}

const Usd_Prototype* Usd_Prototypes::TakeStale()
{
    for (; !_stale.empty(); _stale.pop_front()) {
        const auto found = _prototypes.find(_stale.front());
        if (found == _prototypes.end() || !found->second->isStale || found->second->instances.empty()) {
            continue; // composed or removed meanwhile
        }
        Usd_Prototype& prototype = *found->second;
        prototype.isStale = false;
        if (prototype.source.IsEmpty()) {
            prototype.source = *prototype.instances.begin();
        }
        return &prototype;
    }
    return nullptr;
}

Usd_PrimIndexPtr Usd_Prototypes::MakeSharedIndex(const Usd_PrimIndex& index)
{
    auto shared = std::make_shared<Usd_PrimIndex>(index);
    auto graph = std::make_shared<Usd_PrimIndex::Graph>(*index._graph);
    std::vector<char> hasSpecs(graph->nodes.size(), 0);
    for (const Usd_SpecSite& site : index.GetSites()) {
        hasSpecs[site.node] = 1;
    }
    std::vector<char> isDirect(graph->nodes.size(), 0);
    for (size_t i = 0; i < graph->nodes.size(); ++i) {
        Usd_PrimIndexNode& node = graph->nodes[i];
        isDirect[i] = index.IsDirect(index._graph->nodes[i]) ||
                      (node.parent >= 0 && isDirect[static_cast<size_t>(node.parent)]);
        node.isInert = node.isInert || !isDirect[i] || !hasSpecs[i];
    }
    auto& sites = shared->_sites;
    sites.erase(
        std::remove_if(sites.begin(), sites.end(),
                       [&graph](const Usd_SpecSite& site) { return graph->nodes[site.node].isInert; }),
        sites.end());
    shared->_graph = std::move(graph);
    return shared;
}

std::string Usd_Prototypes::_MakeKey(const Usd_PrimIndex& index)
{
    std::string key;
    std::map<std::string, std::string> selections;
    const Usd_PrimIndexPtr shared = MakeSharedIndex(index);
    for (const Usd_SpecSite& site : shared->GetSites()) {
        const Usd_PrimIndexNode& node = index.GetNode(site);
        key += TfStringPrintf("%p %p %d %.17g %.17g ", static_cast<const void*>(node.layerStack.get()),
                              static_cast<const void*>(site.layer), static_cast<int>(node.arc),
                              site.offset.GetOffset(), site.offset.GetScale());
        key += site.path.GetString() + "\n";
    }
    // Variants that are selected for the instance may be written within what it shares.
    for (const Usd_SpecSite& site : index.GetSites()) {
        SdfVariantSelectionMap authored;
        if (site.layer->HasField(site.path, SdfFieldKeys->VariantSelection, &authored)) {
            selections.insert(authored.begin(), authored.end());
        }
    }
    for (const auto& selection : selections) {
        key += selection.first + "=" + selection.second + "\n";
    }
    return key;
}

PXR_NAMESPACE_CLOSE_SCOPE
