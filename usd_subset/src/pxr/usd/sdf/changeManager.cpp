#include "pxr/usd/sdf/changeManager.h"

#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/notice.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <atomic>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

struct PendingChanges
{
    SdfLayerChangeListVec changes;
    std::vector<SdfSpec> removeIfInert;
    void const* outermostBlock = nullptr;
};

PendingChanges& pending()
{
    thread_local PendingChanges data;
    return data;
}

SdfChangeList& listFor(const SdfLayerHandle& layer)
{
    SdfLayerChangeListVec& lists = pending().changes;
    for (auto& list : lists) {
        if (list.first == layer) {
            return list.second;
        }
    }
    lists.emplace_back(layer, SdfChangeList());
    return lists.back().second;
}

bool isPureReorder(const VtValue& oldValue, const VtValue& newValue)
{
    typedef std::vector<TfToken> Names;
    if (!oldValue.IsHolding<Names>() || !newValue.IsHolding<Names>()) {
        return false;
    }
    const Names& before = oldValue.UncheckedGet<Names>();
    const Names& after = newValue.UncheckedGet<Names>();
    return before.size() == after.size() &&
           std::set<TfToken>(before.begin(), before.end()) == std::set<TfToken>(after.begin(), after.end());
}

void noteSubLayers(SdfChangeList& list, const VtValue& oldValue, const VtValue& newValue)
{
    typedef std::vector<std::string> Paths;
    const Paths before = oldValue.GetWithDefault<Paths>();
    const Paths after = newValue.GetWithDefault<Paths>();
    const std::set<std::string> oldSet(before.begin(), before.end());
    const std::set<std::string> newSet(after.begin(), after.end());
    // A new order of the same layers is told as the removal and addition of all.
    const bool reordered = oldSet == newSet;
    for (const std::string& path : newSet) {
        if (reordered || oldSet.count(path) == 0) {
            list.DidChangeSublayerPaths(path, SdfChangeList::SubLayerAdded);
        }
    }
    for (const std::string& path : oldSet) {
        if (reordered || newSet.count(path) == 0) {
            list.DidChangeSublayerPaths(path, SdfChangeList::SubLayerRemoved);
        }
    }
}

void noteSubLayerOffsets(SdfChangeList& list, const SdfLayerHandle& layer, const VtValue& oldValue,
                         const VtValue& newValue)
{
    const SdfLayerOffsetVector before = oldValue.GetWithDefault<SdfLayerOffsetVector>();
    const SdfLayerOffsetVector after = newValue.GetWithDefault<SdfLayerOffsetVector>();
    const std::vector<std::string> paths = layer->GetSubLayerPaths();
    // Another count means that sublayers came or went, which was told with their paths.
    for (size_t i = 0; before.size() == after.size() && i < after.size() && i < paths.size(); ++i) {
        if (before[i] != after[i]) {
            list.DidChangeSublayerPaths(paths[i], SdfChangeList::SubLayerOffset);
        }
    }
}

// The time codes per second fall back to the frames per second, so that a change of the latter may be one of
// both.
void noteRate(SdfChangeList& list, const SdfLayerHandle& layer, const SdfPath& path, const TfToken& field,
              VtValue&& oldValue, const VtValue& newValue)
{
    const TfToken& rate = SdfFieldKeys->TimeCodesPerSecond;
    if (field == SdfFieldKeys->FramesPerSecond) {
        list.DidChangeInfo(path, field, VtValue(oldValue), newValue);
        if (!layer->HasField(path, rate)) {
            list.DidChangeInfo(path, rate, std::move(oldValue), newValue);
        }
        return;
    }
    const VtValue frames = layer->GetField(path, SdfFieldKeys->FramesPerSecond);
    list.DidChangeInfo(path, rate, oldValue.IsEmpty() ? VtValue(frames) : std::move(oldValue),
                       newValue.IsEmpty() ? frames : newValue);
}

// Notes what a field means beside its value; says whether the value's change is to be noted too.
bool noteMeaning(SdfChangeList& list, const SdfLayerHandle& layer, const SdfPath& path, const TfToken& field,
                 const VtValue& oldValue, const VtValue& newValue)
{
    const auto& keys = *SdfFieldKeys;
    const auto& children = *SdfChildrenKeys;
    if (field == keys.Default) {
        return true; // the most frequent one
    }
    if (field == keys.PrimOrder) {
        list.DidReorderPrims(path);
    } else if (field == children.PrimChildren || field == children.PropertyChildren) {
        if (isPureReorder(oldValue, newValue)) {
            field == children.PrimChildren ? list.DidReorderPrims(path) : list.DidReorderProperties(path);
        }
        return false;
    } else if (field == keys.PropertyOrder) {
        list.DidReorderProperties(path);
        return false;
    } else if (field == keys.VariantSetNames || field == children.VariantSetChildren) {
        list.DidChangePrimVariantSets(path);
    } else if (field == keys.InheritPaths) {
        list.DidChangePrimInheritPaths(path);
    } else if (field == keys.Specializes) {
        list.DidChangePrimSpecializes(path);
    } else if (field == keys.References) {
        list.DidChangePrimReferences(path);
    } else if (field == keys.TimeSamples) {
        list.DidChangeAttributeTimeSamples(path);
    } else if (field == keys.ConnectionPaths) {
        list.DidChangeAttributeConnection(path);
    } else if (field == keys.TargetPaths) {
        list.DidChangeRelationshipTargets(path);
    } else if (field == keys.SubLayers) {
        noteSubLayers(list, oldValue, newValue);
    } else if (field == keys.SubLayerOffsets) {
        noteSubLayerOffsets(list, layer, oldValue, newValue);
    } else if (SdfSchema::GetInstance().HoldsChildren(field)) {
        return false;
    }
    return true;
}

} // namespace

Sdf_ChangeManager& Sdf_ChangeManager::Get()
{
    static Sdf_ChangeManager manager;
    return manager;
}

void Sdf_ChangeManager::DidReplaceLayerContent(const SdfLayerHandle& layer)
{
    if (layer->_ShouldNotify()) {
        listFor(layer).DidReplaceLayerContent();
    }
}

void Sdf_ChangeManager::DidReloadLayerContent(const SdfLayerHandle& layer)
{
    if (layer->_ShouldNotify()) {
        listFor(layer).DidReloadLayerContent();
    }
}

void Sdf_ChangeManager::DidChangeLayerIdentifier(const SdfLayerHandle& layer,
                                                 const std::string& oldIdentifier)
{
    if (layer->_ShouldNotify()) {
        listFor(layer).DidChangeLayerIdentifier(oldIdentifier);
    }
}

void Sdf_ChangeManager::DidChangeLayerResolvedPath(const SdfLayerHandle& layer)
{
    if (layer->_ShouldNotify()) {
        listFor(layer).DidChangeLayerResolvedPath();
    }
}

void Sdf_ChangeManager::DidChangeField(const SdfLayerHandle& layer, const SdfPath& path, const TfToken& field,
                                       VtValue&& oldValue, const VtValue& newValue)
{
    if (!layer->_ShouldNotify()) {
        return;
    }
    SdfChangeList& list = listFor(layer);
    if (field == SdfFieldKeys->TimeCodesPerSecond || field == SdfFieldKeys->FramesPerSecond) {
        noteRate(list, layer, path, field, std::move(oldValue), newValue);
    } else if (noteMeaning(list, layer, path, field, oldValue, newValue)) {
        list.DidChangeInfo(path, field, std::move(oldValue), newValue);
    }
}

void Sdf_ChangeManager::DidChangeAttributeTimeSamples(const SdfLayerHandle& layer, const SdfPath& attrPath)
{
    if (layer->_ShouldNotify()) {
        listFor(layer).DidChangeAttributeTimeSamples(attrPath);
    }
}

void Sdf_ChangeManager::DidMoveSpec(const SdfLayerHandle& layer, const SdfPath& oldPath,
                                    const SdfPath& newPath)
{
    if (!layer->_ShouldNotify()) {
        return;
    }
    SdfChangeList& list = listFor(layer);
    const bool renamed = oldPath.GetParentPath() == newPath.GetParentPath();
    if (oldPath.IsPropertyPath()) {
        if (renamed) {
            list.DidChangePropertyName(oldPath, newPath);
        } else {
            list.DidRemoveProperty(oldPath, false);
            list.DidAddProperty(newPath, false);
        }
    } else if (oldPath.IsPrimPath()) {
        renamed ? list.DidChangePrimName(oldPath, newPath) : list.DidMovePrim(oldPath, newPath);
    }
}

void Sdf_ChangeManager::DidAddSpec(const SdfLayerHandle& layer, const SdfPath& path, bool inert)
{
    if (!layer->_ShouldNotify()) {
        return;
    }
    if (path.IsPropertyPath()) {
        listFor(layer).DidAddProperty(path, inert);
    } else if (path.IsTargetPath()) {
        listFor(layer).DidAddTarget(path);
    } else if (path.IsPrimOrPrimVariantSelectionPath()) {
        listFor(layer).DidAddPrim(path, inert);
    }
}

void Sdf_ChangeManager::DidRemoveSpec(const SdfLayerHandle& layer, const SdfPath& path, bool inert)
{
    if (!layer->_ShouldNotify()) {
        return;
    }
    if (path.IsPropertyPath()) {
        listFor(layer).DidRemoveProperty(path, inert);
    } else if (path.IsTargetPath()) {
        listFor(layer).DidRemoveTarget(path);
    } else if (path.IsPrimOrPrimVariantSelectionPath()) {
        listFor(layer).DidRemovePrim(path, inert);
    }
}

void Sdf_ChangeManager::RemoveSpecIfInert(const SdfSpec& spec)
{
    SdfChangeBlock block;
    pending().removeIfInert.push_back(spec);
}

void const* Sdf_ChangeManager::OpenChangeBlock(void const* block)
{
    PendingChanges& data = pending();
    if (data.outermostBlock) {
        return nullptr;
    }
    data.outermostBlock = block;
    return block;
}

void Sdf_ChangeManager::CloseChangeBlock(void const* key)
{
    PendingChanges& data = pending();
    if (data.outermostBlock != key) {
        return;
    }
    std::vector<SdfSpec> remove;
    remove.swap(data.removeIfInert);
    for (const SdfSpec& spec : remove) {
        if (const SdfLayerHandle layer = spec.GetLayer()) {
            layer->_RemoveIfInert(spec);
        }
    }
    data.outermostBlock = nullptr;
    SdfLayerChangeListVec changes;
    changes.swap(data.changes);
    // Layers that died meanwhile have nobody left who could ask about them.
    changes.erase(
        std::remove_if(changes.begin(), changes.end(), [](const auto& change) { return !change.first; }),
        changes.end());
    if (changes.empty()) {
        return;
    }
    static std::atomic<size_t> serialNumber{1};
    const size_t serial = serialNumber.fetch_add(1);
    for (const auto& [layer, list] : changes) {
        if (!layer) {
            continue;
        }
        if (layer->_UpdateLastDirtinessState()) {
            SdfNotice::LayerDirtinessChanged().Send(layer);
        }
        const SdfChangeList::Entry& root = list.GetEntry(SdfPath::AbsoluteRootPath());
        for (const auto& info : root.infoChanged) {
            SdfNotice::LayerInfoDidChange(info.first).Send(layer);
        }
        if (root.flags.didChangeIdentifier) {
            SdfNotice::LayerIdentifierDidChange(root.oldIdentifier, layer->GetIdentifier()).Send(layer);
        }
        if (root.flags.didReplaceContent) {
            SdfNotice::LayerDidReplaceContent().Send(layer);
        }
        if (root.flags.didReloadContent) {
            SdfNotice::LayerDidReloadContent().Send(layer);
        }
    }
    SdfNotice::LayersDidChange(changes, serial).Send();
    const SdfNotice::LayersDidChangeSentPerLayer perLayer(changes, serial);
    for (const auto& change : changes) {
        if (change.first) {
            perLayer.Send(change.first);
        }
    }
}

SdfChangeBlock::SdfChangeBlock() : _key(Sdf_ChangeManager::OpenChangeBlock(this)) {}

void SdfChangeBlock::_CloseChangeBlock(void const* key) const { Sdf_ChangeManager::CloseChangeBlock(key); }

PXR_NAMESPACE_CLOSE_SCOPE
