#include "pxr/usd/usd/changeProcessor.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

void saveLayers(const std::vector<SdfLayerRefPtr>& layers)
{
    for (const SdfLayerRefPtr& layer : layers) {
        if (!layer->IsDirty()) {
            continue;
        }
        if (layer->IsAnonymous()) {
            TF_WARN("Not saving @%s@ because it is an anonymous layer", layer->GetIdentifier().c_str());
            continue;
        }
        layer->Save();
    }
}

size_t sessionLayerCount(const Usd_StageImpl& stage)
{
    const auto& entries = stage.layerStack->GetEntries();
    const auto root =
        std::find_if(entries.begin(), entries.end(),
                     [&stage](const Usd_LayerStack::Entry& entry) { return entry.layer == stage.rootLayer; });
    return static_cast<size_t>(root - entries.begin());
}

} // namespace

void UsdStage::Reload()
{
    std::set<SdfLayerHandle> layers;
    for (const SdfLayerRefPtr& layer : _impl->GetUsedLayers()) {
        layers.insert(SdfLayerHandle(layer));
    }
    const SdfChangeBlock block;
    SdfLayer::ReloadLayers(layers);
    _impl->clips.Reload();
}

void UsdStage::Save()
{
    std::set<SdfLayerRefPtr> layers = _impl->GetUsedLayers();
    _impl->clips.CollectLayers(&layers);
    const auto& entries = _impl->layerStack->GetEntries();
    for (size_t i = 0; i != sessionLayerCount(*_impl); ++i) {
        layers.erase(entries[i].layer);
    }
    saveLayers({layers.begin(), layers.end()});
}

void UsdStage::SaveSessionLayers()
{
    std::vector<SdfLayerRefPtr> layers;
    const auto& entries = _impl->layerStack->GetEntries();
    for (size_t i = 0; i != sessionLayerCount(*_impl); ++i) {
        layers.push_back(entries[i].layer);
    }
    saveLayers(layers);
}

SdfLayerHandle UsdStage::GetSessionLayer() const { return SdfLayerHandle(_impl->sessionLayer); }

ArResolverContext UsdStage::GetPathResolverContext() const { return _impl->resolverContext; }

SdfLayerHandle UsdStage::GetRootLayer() const { return SdfLayerHandle(_impl->rootLayer); }

std::string UsdStage::ResolveIdentifierToEditTarget(const std::string& identifier) const
{
    if (SdfLayer::IsAnonymousLayerIdentifier(identifier)) {
        return SdfLayer::Find(identifier) ? identifier : std::string();
    }
    const ArResolverContextBinder binder(_impl->resolverContext);
    const std::string anchored = SdfComputeAssetPathRelativeToLayer(_impl->editTarget.GetLayer(), identifier);
    return ArGetResolver().Resolve(anchored).GetPathString();
}

SdfLayerHandleVector UsdStage::GetLayerStack(bool includeSessionLayers) const
{
    SdfLayerHandleVector layers;
    const auto& entries = _impl->layerStack->GetEntries();
    for (size_t i = includeSessionLayers ? 0 : sessionLayerCount(*_impl); i < entries.size(); ++i) {
        layers.push_back(SdfLayerHandle(entries[i].layer));
    }
    return layers;
}

SdfLayerHandleVector UsdStage::GetUsedLayers(bool includeClipLayers) const
{
    std::set<SdfLayerRefPtr> used = _impl->GetUsedLayers();
    if (includeClipLayers) {
        _impl->clips.CollectLayers(&used);
    }
    SdfLayerHandleVector layers;
    for (const SdfLayerRefPtr& layer : used) {
        layers.push_back(SdfLayerHandle(layer));
    }
    return layers;
}

bool UsdStage::HasLocalLayer(const SdfLayerHandle& layer) const
{
    return layer && _impl->layerStack->HasLayer(get_pointer(layer));
}

const UsdEditTarget& UsdStage::GetEditTarget() const { return _impl->editTarget; }

UsdEditTarget UsdStage::GetEditTargetForLocalLayer(size_t i)
{
    const auto& entries = _impl->layerStack->GetEntries();
    if (i >= entries.size()) {
        TF_CODING_ERROR("Layer index %zu is out of range: only %zu entries in layer stack", i,
                        entries.size());
        return UsdEditTarget();
    }
    return UsdEditTarget(entries[i].layer, entries[i].offset);
}

UsdEditTarget UsdStage::GetEditTargetForLocalLayer(const SdfLayerHandle& layer)
{
    const Usd_LayerStack::Entry* const entry = _impl->layerStack->FindEntry(get_pointer(layer));
    return UsdEditTarget(layer, entry ? entry->offset : SdfLayerOffset());
}

void UsdStage::SetEditTarget(const UsdEditTarget& editTarget)
{
    if (!editTarget.IsValid()) {
        TF_CODING_ERROR("Attempt to set an invalid UsdEditTarget as current");
        return;
    }
    if (editTarget.GetMapFunction().IsIdentity() && !HasLocalLayer(editTarget.GetLayer())) {
        TF_CODING_ERROR("Layer @%s@ is not in the local LayerStack rooted at @%s@",
                        editTarget.GetLayer()->GetIdentifier().c_str(),
                        GetRootLayer()->GetIdentifier().c_str());
        return;
    }
    if (editTarget != _impl->editTarget) {
        _impl->editTarget = editTarget;
        const UsdStageWeakPtr self(this);
        UsdNotice::StageEditTargetChanged(self).Send(self);
    }
}

void UsdStage::MuteLayer(const std::string& layerIdentifier) { MuteAndUnmuteLayers({layerIdentifier}, {}); }

void UsdStage::UnmuteLayer(const std::string& layerIdentifier) { MuteAndUnmuteLayers({}, {layerIdentifier}); }

void UsdStage::MuteAndUnmuteLayers(const std::vector<std::string>& muteLayers,
                                   const std::vector<std::string>& unmuteLayers)
{
    std::vector<std::string>& muted = _impl->mutedLayers;
    std::vector<std::string> added;
    std::vector<std::string> removed;
    for (const std::string& name : muteLayers) {
        const std::string identifier = _impl->GetCanonicalIdentifier(name);
        if (identifier == _impl->rootLayer->GetIdentifier()) {
            TF_CODING_ERROR("Cannot mute cache's root layer @%s@", identifier.c_str());
            continue;
        }
        const auto place = std::lower_bound(muted.begin(), muted.end(), identifier);
        if (place == muted.end() || *place != identifier) {
            muted.insert(place, identifier);
            added.push_back(identifier);
        }
    }
    for (const std::string& name : unmuteLayers) {
        const std::string identifier = _impl->GetCanonicalIdentifier(name);
        const auto place = std::lower_bound(muted.begin(), muted.end(), identifier);
        if (place != muted.end() && *place == identifier) {
            muted.erase(place);
            removed.push_back(identifier);
        }
    }
    if (added.empty() && removed.empty()) {
        return;
    }
    const UsdStageWeakPtr self(this);
    UsdNotice::LayerMutingChanged(self, added, removed).Send(self);
    Usd_ChangeProcessor(*_impl).ProcessLayerStackChange();
}

const std::vector<std::string>& UsdStage::GetMutedLayers() const { return _impl->mutedLayers; }

bool UsdStage::IsLayerMuted(const std::string& layerIdentifier) const
{
    return std::binary_search(_impl->mutedLayers.begin(), _impl->mutedLayers.end(),
                              _impl->GetCanonicalIdentifier(layerIdentifier));
}

PXR_NAMESPACE_CLOSE_SCOPE
