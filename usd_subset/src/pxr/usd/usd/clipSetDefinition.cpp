#include "pxr/usd/usd/clipSetDefinition.h"

#include "pxr/usd/usd/clipTemplate.h"
#include "pxr/usd/usd/primIndex.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/usd/clipsAPI.h>
#include <pxr/usd/usd/tokens.h>

#include <algorithm>
#include <map>
#include <tuple>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Site = std::vector<Usd_SpecSite>::const_iterator;

struct ClipSet
{
    VtDictionary info;
    const Usd_SpecSite* anchor = nullptr; // the strongest place that names asset paths
    size_t layerStackOrder = 0;           // of the layer stack among those that anchor sets
    size_t order = 0;                     // among the sets of the layer stack
};

using ClipSets = std::map<std::string, ClipSet>;

template <class T>
std::optional<T> find(const VtDictionary& info, const TfToken& key)
{
    const auto found = info.find(key.GetString());
    return found != info.end() && found->second.IsHolding<T>()
               ? std::optional<T>(found->second.UncheckedGet<T>())
               : std::nullopt;
}

void applyOffset(const SdfLayerOffset& offset, const TfToken& key, VtDictionary* info)
{
    if (std::optional<VtVec2dArray> times = find<VtVec2dArray>(*info, key)) {
        for (GfVec2d& time : *times) {
            time[0] = offset * time[0];
        }
        (*info)[key.GetString()] = VtValue(*times);
    }
}

/// Composes the sets that the layers of one node name, weakest layer first.
class NodeComposer
{
public:
    explicit NodeComposer(const SdfPath& prim) : _prim(prim) {}

    ClipSets Compose(Site begin, Site end)
    {
        for (Site site = end; site-- != begin;) {
            _AddSite(*site);
        }
        for (auto set = _sets.begin(); set != _sets.end();) {
            const auto place = std::find(_order.begin(), _order.end(), set->first);
            set->second.order = static_cast<size_t>(place - _order.begin());
            set = place == _order.end() ? _sets.erase(set) : std::next(set);
        }
        return std::move(_sets);
    }

private:
    void _AddSite(const Usd_SpecSite& site)
    {
        VtDictionary clips;
        if (site.layer->HasField(site.path, UsdTokens->clips, &clips)) {
            // Each set counts as added without being listed.
            std::vector<std::string> names;
            for (const auto& entry : clips) {
                if (_AddSet(site, entry.first, entry.second)) {
                    names.push_back(entry.first);
                }
            }
            std::sort(names.begin(), names.end());
            SdfStringListOp added;
            added.SetAddedItems(names);
            added.ApplyOperations(&_order);
            _hasClips = true;
        }
        // What weaker layers without clips list is not looked at.
        SdfStringListOp listed;
        if (_hasClips && site.layer->HasField(site.path, UsdTokens->clipSets, &listed)) {
            listed.ApplyOperations(&_order);
        }
    }

    bool _AddSet(const Usd_SpecSite& site, const std::string& name, const VtValue& content)
    {
        if (name.empty() || !content.IsHolding<VtDictionary>()) {
            TF_WARN("The entry '%s' in the clips of <%s>, written on <%s> in @%s@, was left out: %s.",
                    name.c_str(), _prim.GetText(), site.path.GetText(), site.layer->GetIdentifier().c_str(),
                    name.empty() ? "it has no name" : "it must be a dictionary");
            return false;
        }
        ClipSet& set = _sets[name];
        VtDictionary info = content.UncheckedGet<VtDictionary>();
        if (find<VtArray<SdfAssetPath>>(info, UsdClipsAPIInfoKeys->assetPaths) ||
            find<std::string>(info, UsdClipsAPIInfoKeys->templateAssetPath)) {
            set.anchor = &site;
        }
        applyOffset(site.offset, UsdClipsAPIInfoKeys->active, &info);
        applyOffset(site.offset, UsdClipsAPIInfoKeys->times, &info);
        VtDictionaryOverRecursive(&info, set.info);
        set.info.swap(info);
        return true;
    }

    const SdfPath& _prim;
    ClipSets _sets;
    std::vector<std::string> _order;
    bool _hasClips = false;
};

// Composes what the nodes say, strongest first.
ClipSets composeSets(const Usd_PrimIndex& index)
{
    ClipSets composed;
    std::vector<const Usd_LayerStack*> layerStacks;
    const std::vector<Usd_SpecSite>& sites = index.GetSites();
    for (Site begin = sites.begin(); begin != sites.end();) {
        const Site end =
            std::find_if(begin, sites.end(), [&](const Usd_SpecSite& s) { return s.node != begin->node; });
        const Usd_LayerStack* const layerStack = index.GetNode(*begin).layerStack.get();
        auto known = std::find(layerStacks.begin(), layerStacks.end(), layerStack);
        if (known == layerStacks.end()) {
            known = layerStacks.insert(known, layerStack);
        }
        for (auto& entry : NodeComposer(index.GetPath()).Compose(begin, end)) {
            ClipSet& set = composed[entry.first];
            if (!set.anchor && entry.second.anchor) {
                set.anchor = entry.second.anchor;
                set.order = entry.second.order;
                set.layerStackOrder = static_cast<size_t>(known - layerStacks.begin());
            }
            VtDictionaryOverRecursive(&set.info, entry.second.info);
        }
        begin = end;
    }
    return composed;
}

Usd_ClipSetDefinition makeDefinition(const Usd_PrimIndex& index, const std::string& name, const ClipSet& set)
{
    const VtDictionary& info = set.info;
    Usd_ClipSetDefinition definition;
    definition.name = name;
    definition.layerStack = index.GetNode(*set.anchor).layerStack.get();
    definition.sourcePath = set.anchor->path;
    definition.sourceLayer = SdfLayerRefPtr(set.anchor->layer);
    definition.primPath = find<std::string>(info, UsdClipsAPIInfoKeys->primPath);
    definition.manifestAssetPath = find<SdfAssetPath>(info, UsdClipsAPIInfoKeys->manifestAssetPath);
    definition.interpolateMissingClipValues =
        find<bool>(info, UsdClipsAPIInfoKeys->interpolateMissingClipValues);
    definition.assetPaths = find<VtArray<SdfAssetPath>>(info, UsdClipsAPIInfoKeys->assetPaths);
    if (definition.assetPaths) {
        definition.active = find<VtVec2dArray>(info, UsdClipsAPIInfoKeys->active);
        definition.times = find<VtVec2dArray>(info, UsdClipsAPIInfoKeys->times);
    } else {
        Usd_DeriveClips(info, set.anchor->offset, index.GetPath(), &definition);
    }
    return definition;
}

} // namespace

std::vector<Usd_ClipSetDefinition> Usd_ComputeClipSetDefinitions(const Usd_PrimIndex& index)
{
    const ClipSets composed = composeSets(index);
    std::vector<ClipSets::const_pointer> sorted;
    for (const auto& entry : composed) {
        if (entry.second.anchor) { // else there is no place that its values could come in at
            sorted.push_back(&entry);
        }
    }
    std::sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) {
        return std::tie(a->second.layerStackOrder, a->second.anchor->path, a->second.order) <
               std::tie(b->second.layerStackOrder, b->second.anchor->path, b->second.order);
    });
    std::vector<Usd_ClipSetDefinition> definitions;
    for (const auto* entry : sorted) {
        definitions.push_back(makeDefinition(index, entry->first, entry->second));
    }
    return definitions;
}

PXR_NAMESPACE_CLOSE_SCOPE
