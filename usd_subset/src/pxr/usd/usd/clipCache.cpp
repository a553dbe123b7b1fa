#include "pxr/usd/usd/clipCache.h"

#include "pxr/usd/usd/clipSetDefinition.h"
#include "pxr/usd/usd/primIndex.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/changeBlock.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

bool Usd_ClipCache::Populate(const SdfPath& prim, const Usd_PrimIndex& index)
{
    Sets sets;
    if (index.HasClips()) {
        for (Usd_ClipSetDefinition& definition : Usd_ComputeClipSetDefinitions(index)) {
            _ReuseManifest(prim, &definition);
            std::string why;
            Usd_ClipSetPtr set = Usd_ClipSet::New(definition, _warnings, &why);
            if (set && !set->GetClips().empty()) {
                sets.push_back(std::move(set));
            } else if (!why.empty()) {
                TF_WARN("Invalid clips specified for prim <%s>: %s", prim.GetText(), why.c_str());
            }
        }
    }
    if (sets.empty()) {
        _sets.erase(prim);
        return false;
    }
    const Sets& weaker = Get(prim.GetParentPath());
    sets.insert(sets.end(), weaker.begin(), weaker.end());
    _sets[prim] = std::move(sets);
    return true;
}

// Generating a manifest opens all clips: one of the same clips is taken over.
void Usd_ClipCache::_ReuseManifest(const SdfPath& prim, Usd_ClipSetDefinition* definition) const
{
    const auto retired = _retired.find(prim);
    if (retired == _retired.end() || definition->manifestAssetPath || !definition->assetPaths) {
        return;
    }
    for (const Usd_ClipSetPtr& set : retired->second) {
        const auto& clips = set->GetClips();
        const bool isSame =
            set->HasGeneratedManifest() && set->GetName() == definition->name &&
            set->GetClipPath().GetString() == definition->primPath.value_or(std::string()) &&
            std::equal(
                clips.begin(), clips.end(), definition->assetPaths->cbegin(), definition->assetPaths->cend(),
                [](const Usd_ClipSet::Clip& clip, const auto& asset) { return clip->GetAsset() == asset; });
        if (isSame) {
            definition->generatedManifest = SdfLayerRefPtr(set->GetManifest().GetLayer());
            return;
        }
    }
}

void Usd_ClipCache::InvalidateBelow(const SdfPath& prim)
{
    auto entry = _sets.lower_bound(prim);
    while (entry != _sets.end() && entry->first.HasPrefix(prim)) {
        _retired[entry->first] = std::move(entry->second);
        entry = _sets.erase(entry);
    }
}

const Usd_ClipCache::Sets& Usd_ClipCache::Get(const SdfPath& prim) const
{
    static const Sets* const none = new Sets;
    for (SdfPath path = prim; !_sets.empty() && path.IsPrimPath(); path = path.GetParentPath()) {
        const auto found = _sets.find(path);
        if (found != _sets.end()) {
            return found->second;
        }
    }
    return *none;
}

std::set<Usd_ClipSetPtr> Usd_ClipCache::_GetAll() const
{
    std::set<Usd_ClipSetPtr> all;
    for (const auto& entry : _sets) {
        all.insert(entry.second.begin(), entry.second.end());
    }
    return all;
}

void Usd_ClipCache::CollectLayers(std::set<SdfLayerRefPtr>* layers) const
{
    const auto add = [layers](const Usd_Clip& clip) {
        if (const SdfLayerHandle layer = clip.GetLayerIfOpen()) {
            layers->insert(SdfLayerRefPtr(layer));
        }
    };
    for (const Usd_ClipSetPtr& set : _GetAll()) {
        add(set->GetManifest());
        for (const Usd_ClipSet::Clip& clip : set->GetClips()) {
            add(*clip);
        }
    }
}

void Usd_ClipCache::Reload()
{
    const SdfChangeBlock block;
    std::set<SdfLayerHandle> layers;
    for (const Usd_ClipSetPtr& set : _GetAll()) {
        for (const Usd_ClipSet::Clip& clip : set->GetClips()) {
            if (const SdfLayerHandle layer = clip->GetLayerIfOpen()) {
                layers.insert(layer);
            }
        }
        const SdfLayerHandle manifest = set->GetManifest().GetLayerIfOpen();
        if (manifest && !set->HasGeneratedManifest()) {
            layers.insert(manifest);
        }
    }
    SdfLayer::ReloadLayers(layers);
    for (const Usd_ClipSetPtr& set : _GetAll()) {
        if (set->HasGeneratedManifest()) {
            set->RegenerateManifest();
        }
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
