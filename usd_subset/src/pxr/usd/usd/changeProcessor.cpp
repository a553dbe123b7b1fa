#include "pxr/usd/usd/changeProcessor.h"

#include "pxr/usd/usd/errorText.h"
#include "pxr/usd/usd/primComposer.h"
#include "pxr/usd/usd/stageImpl.h"

#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/tokens.h>

#include <algorithm>
#include <iterator>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

void Usd_ChangeProcessor::Process(const SdfLayerChangeListVec& changes)
{
    for (const auto& change : changes) {
        if (!_stage.layerStack->HasLayer(get_pointer(change.first)) &&
            !_stage.dependencies.HasLayer(get_pointer(change.first))) {
            continue;
        }
        for (const auto& entry : change.second.GetEntryList()) {
            if (!entry.first.IsTargetPath()) {
                _ProcessEntry(change.first, entry.first, entry.second);
            }
        }
    }
    _Recompose();
    _Send();
}

void Usd_ChangeProcessor::ProcessLayerStackChange()
{
    _layerStackChanged = true;
    _resyncs[SdfPath::AbsoluteRootPath()];
    _Recompose();
    _Send();
}

void Usd_ChangeProcessor::SendResyncOfAll()
{
    _resyncs[SdfPath::AbsoluteRootPath()];
    _Send();
}

void Usd_ChangeProcessor::ProcessPathChanges(const SdfPathVector& paths)
{
    for (const SdfPath& path : paths) {
        _resyncs[path];
    }
    _Recompose();
    _Send();
}

void Usd_ChangeProcessor::_ProcessEntry(const SdfLayerHandle& layer, const SdfPath& path, const _Entry& entry)
{
    if (path.IsAbsoluteRootPath()) {
        _ProcessRootEntry(layer, entry);
    }
    if (path.IsAbsoluteRootPath() || path.IsPrimOrPrimVariantSelectionPath()) {
        _ProcessPrimEntry(layer, path, entry);
        return;
    }
    const bool isSpecChange =
        entry.flags.didAddPropertyWithOnlyRequiredFields || entry.flags.didAddProperty ||
        entry.flags.didRemovePropertyWithOnlyRequiredFields || entry.flags.didRemoveProperty;
    _Add(layer, path, &entry, path.IsPropertyPath() && isSpecChange ? &_propertyResyncs : &_infoChanges);
}

void Usd_ChangeProcessor::_ProcessRootEntry(const SdfLayerHandle& layer, const _Entry& entry)
{
    bool isSignificant = entry.flags.didReplaceContent || entry.flags.didChangeIdentifier ||
                         entry.HasInfoChange(SdfFieldKeys->LayerRelocates) ||
                         entry.HasInfoChange(SdfFieldKeys->ExpressionVariables) || _ChangesOffsets(entry) ||
                         _ChangesRate(entry);
    for (const auto& change : entry.subLayerChanges) {
        // An empty layer takes part without changing anything.
        _layerStackChanged = true;
        std::string why;
        const ArResolverContextBinder binder(_stage.resolverContext);
        const SdfLayerRefPtr sublayer =
            Usd_OpenLayer(SdfComputeAssetPathRelativeToLayer(layer, change.first), &why);
        isSignificant = isSignificant || (sublayer && !sublayer->IsEmpty());
    }
    const auto defaultPrim = entry.FindInfoChange(SdfFieldKeys->DefaultPrim);
    const bool namesOther = defaultPrim != entry.infoChanged.end();
    const bool isLocal = _stage.layerStack->HasLayer(get_pointer(layer));
    if (isSignificant) {
        _layerStackChanged = true;
    }
    const bool isRoot = layer == _stage.rootLayer || layer == _stage.sessionLayer;
    const bool hasOtherTypes =
        isRoot && entry.FindInfoChange(UsdTokens->fallbackPrimTypes) != entry.infoChanged.end();
    if ((isSignificant && isLocal) || hasOtherTypes) {
        _resyncs[SdfPath::AbsoluteRootPath()].push_back(&entry);
    }
    if (isSignificant || namesOther) {
        for (const SdfPath& prim : _stage.dependencies.FindPrims(get_pointer(layer))) {
            _resyncs[prim];
        }
    }
    // A layer that names another default prim changes what stands for it.
    if (namesOther && isLocal) {
        for (const VtValue& value : {defaultPrim->second.first, defaultPrim->second.second}) {
            const TfToken name = value.GetWithDefault<TfToken>();
            _resyncs[SdfPath::IsValidIdentifier(name) ? SdfPath::AbsoluteRootPath().AppendChild(name)
                                                      : SdfPath::AbsoluteRootPath()];
        }
    }
}

bool Usd_ChangeProcessor::_ChangesOffsets(const _Entry& entry)
{
    return std::any_of(entry.subLayerChanges.begin(), entry.subLayerChanges.end(),
                       [](const auto& change) { return change.second == SdfChangeList::SubLayerOffset; });
}

bool Usd_ChangeProcessor::_ChangesRate(const _Entry& entry) const
{
    const auto change = entry.FindInfoChange(SdfFieldKeys->TimeCodesPerSecond);
    if (change == entry.infoChanged.end()) {
        return false;
    }
    const VtValue& before = change->second.first;
    const VtValue& after = change->second.second;
    if (before == after) {
        // Authored as it was implied before: only which of session and root layer counts can change.
        return _stage.layerStack->NeedsOtherTimeCodesPerSecond();
    }
    const VtValue& fallback = SdfSchema::GetInstance().GetFallback(SdfFieldKeys->TimeCodesPerSecond);
    return !(before.IsEmpty() && after == fallback) && !(after.IsEmpty() && before == fallback);
}

void Usd_ChangeProcessor::_ProcessPrimEntry(const SdfLayerHandle& layer, const SdfPath& path,
                                            const _Entry& entry)
{
    bool resyncs = entry.flags.didReorderChildren;
    bool changesType = false;
    for (const auto& info : entry.infoChanged) {
        const TfToken& field = info.first;
        if (field == SdfFieldKeys->TypeName || field == UsdTokens->apiSchemas) {
            changesType = true;
        } else if (field == SdfFieldKeys->Active || field == SdfFieldKeys->Kind ||
                   field == SdfFieldKeys->Specifier || field == UsdTokens->clips ||
                   field == UsdTokens->clipSets) {
            resyncs = true;
        }
    }
    if (resyncs) {
        _Add(layer, path, &entry, &_resyncs);
    } else {
        if (changesType) {
            _Add(layer, path, &entry, &_typeChanges);
        }
        _Add(layer, path, &entry, &_infoChanges);
    }
    if (!path.IsAbsoluteRootPath()) {
        if (_NeedsOtherIndex(entry)) {
            _Add(layer, path, nullptr, &_resyncs);
        }
        _ProcessPrimSpecs(layer, path, entry);
    }
}

bool Usd_ChangeProcessor::_NeedsOtherIndex(const _Entry& entry)
{
    return entry.flags.didChangePrimInheritPaths || entry.flags.didChangePrimSpecializes ||
           entry.flags.didChangePrimReferences || entry.flags.didChangePrimVariantSets ||
           entry.flags.didRename || entry.HasInfoChange(SdfFieldKeys->Payload) ||
           entry.HasInfoChange(SdfFieldKeys->Permission) ||
           entry.HasInfoChange(SdfFieldKeys->VariantSelection) ||
           entry.HasInfoChange(SdfFieldKeys->Instanceable);
}

void Usd_ChangeProcessor::_ProcessPrimSpecs(const SdfLayerHandle& layer, const SdfPath& path,
                                            const _Entry& entry)
{
    if (entry.flags.didRename) {
        _Add(layer, entry.oldPath, nullptr, &_resyncs);
    }
    if (entry.flags.didAddNonInertPrim || entry.flags.didRemoveNonInertPrim) {
        _Add(layer, path, nullptr, &_resyncs);
        return;
    }
    if (!entry.flags.didAddInertPrim && !entry.flags.didRemoveInertPrim) {
        return;
    }
    for (const SdfPath& affected : _GetAffectedPaths(layer, path, true)) {
        const Usd_PrimData* const prim = _stage.prims.Find(affected);
        const bool wasThere = prim && prim->GetSourcePrimIndex().HasSpecs();
        // The first spec of a prim, or the last; or one that an arc leads to, which may not be followed yet.
        if (!wasThere || (entry.flags.didRemoveInertPrim && !_HasSpecs(prim->GetSourcePrimIndex())) ||
            prim->GetSourcePrimIndex().GetNodes().size() > 1) {
            _resyncs[affected];
        } else {
            _specChanges.push_back(affected);
        }
    }
}

bool Usd_ChangeProcessor::_HasSpecs(const Usd_PrimIndex& index)
{
    const auto& sites = index.GetSites();
    return std::any_of(sites.begin(), sites.end(),
                       [](const Usd_SpecSite& site) { return site.layer->HasSpec(site.path); });
}

SdfPathVector Usd_ChangeProcessor::_GetAffectedPaths(const SdfLayerHandle& layer, const SdfPath& path,
                                                     bool withBelow) const
{
    std::set<SdfPath> affected;
    const SdfPath plain = path.StripAllVariantSelections();
    const bool isLocal = _stage.layerStack->HasLayer(get_pointer(layer));
    _stage.dependencies.FindAffected(get_pointer(layer), plain, withBelow, &affected);
    if (isLocal && affected.empty()) {
        return {_stage.GetPathInPrototype(plain)};
    }
    if (isLocal) {
        affected.insert(plain);
    }
    // What instances share is told of their prototype.
    std::set<SdfPath> composed;
    for (const SdfPath& each : affected) {
        composed.insert(_stage.GetPathInPrototype(each));
    }
    return {composed.begin(), composed.end()};
}

void Usd_ChangeProcessor::_Add(const SdfLayerHandle& layer, const SdfPath& path, const _Entry* entry,
                               _PathsToChanges* changes) const
{
    for (const SdfPath& affected : _GetAffectedPaths(layer, path, changes == &_resyncs)) {
        auto& entries = (*changes)[affected];
        if (entry) {
            entries.push_back(entry);
        }
    }
}

void Usd_ChangeProcessor::_RemoveDescendants(_PathsToChanges* changes)
{
    // Paths are sorted so that what is below a path follows it.
    for (auto it = changes->begin(); it != changes->end(); ++it) {
        auto below = std::next(it);
        while (below != changes->end() && below->first.HasPrefix(it->first)) {
            below = changes->erase(below);
        }
    }
}

void Usd_ChangeProcessor::_MergeAndRemoveDescendants(_PathsToChanges* stronger, _PathsToChanges* weaker)
{
    for (auto& entry : *stronger) {
        auto it = weaker->lower_bound(entry.first);
        while (it != weaker->end() && it->first.HasPrefix(entry.first)) {
            if (it->first == entry.first) {
                entry.second.insert(entry.second.end(), it->second.begin(), it->second.end());
            }
            it = weaker->erase(it);
        }
    }
}

void Usd_ChangeProcessor::_Recompose()
{
    if (_layerStackChanged) {
        _stage.RebuildLayerStacks();
    }
    _RemoveDescendants(&_resyncs);
    Usd_PrimComposer composer(_stage);
    if (_layerStackChanged && _resyncs.empty()) {
        composer.ComposeAll(); // the same prims, on the layers that take part now
    }
    std::sort(_specChanges.begin(), _specChanges.end());
    for (const SdfPath& path : _specChanges) {
        composer.RecomposeSpecs(path);
    }
    SdfPathVector paths;
    for (const auto& resync : _resyncs) {
        paths.push_back(resync.first);
    }
    composer.Recompose(paths);
    _MergeAndRemoveDescendants(&_resyncs, &_typeChanges);
    for (const auto& change : _typeChanges) {
        composer.RecomposeType(change.first);
    }
    _resyncs.merge(_typeChanges);
    if (_layerStackChanged || !paths.empty()) {
        _stage.FollowLayers();
    }
}

void Usd_ChangeProcessor::_Send()
{
    _RemoveDescendants(&_resyncs);
    _MergeAndRemoveDescendants(&_resyncs, &_propertyResyncs);
    _resyncs.merge(_propertyResyncs);
    _MergeAndRemoveDescendants(&_resyncs, &_infoChanges);
    if (_resyncs.empty() && _infoChanges.empty()) {
        return;
    }
    const UsdStageWeakPtr stage = _stage.GetStage();
    const _PathsToChanges none;
    UsdNotice::ObjectsChanged(stage, &_resyncs, &_infoChanges, &none).Send(stage);
    UsdNotice::StageContentsChanged(stage).Send(stage);
}

PXR_NAMESPACE_CLOSE_SCOPE
