#include "pxr/usd/usd/stageImpl.h"

#include "pxr/usd/usd/changeProcessor.h"
#include "pxr/usd/usd/errorText.h"
#include "pxr/usd/usd/primComposer.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/ar/resolver.h>
#include <pxr/usd/ar/resolverContextBinder.h>
#include <pxr/usd/sdf/layerUtils.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usd/schemaRegistry.h>
#include <pxr/usd/usd/tokens.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// Where a stage seeks asset paths: beside its root layer.
ArResolverContext contextOf(const SdfLayer& root)
{
    const ArResolver& resolver = ArGetResolver();
    return root.IsAnonymous() ? resolver.CreateDefaultContext()
                              : resolver.CreateDefaultContextForAsset(root.GetRealPath());
}

} // namespace

Usd_StageImpl::Usd_StageImpl(UsdStage* owner, const SdfLayerRefPtr& root, const SdfLayerRefPtr& session,
                             UsdStage::InitialLoadSet load)
    : stage(owner),
      rootLayer(root),
      sessionLayer(session),
      resolverContext(contextOf(*root)),
      loadRules(load == UsdStage::LoadAll ? UsdStageLoadRules::LoadAll() : UsdStageLoadRules::LoadNone())
{}

Usd_StageImpl::~Usd_StageImpl()
{
    for (auto& followed : _followed) {
        TfNotice::Revoke(followed.second);
    }
}

UsdStageRefPtr Usd_StageImpl::Open(const SdfLayerRefPtr& root, const SdfLayerRefPtr& session,
                                   UsdStage::InitialLoadSet load)
{
    const UsdStageRefPtr result = TfCreateRefPtr(new UsdStage);
    result->_impl = std::make_unique<Usd_StageImpl>(get_pointer(result), root, session, load);
    Usd_StageImpl& impl = *result->_impl;
    impl.RebuildLayerStacks();
    impl.editTarget = result->GetEditTargetForLocalLayer(SdfLayerHandle(root));
    Usd_PrimComposer(impl).ComposeAll();
    impl.FollowLayers();
    return result;
}

void Usd_StageImpl::RebuildLayerStacks()
{
    const ArResolverContextBinder binder(resolverContext);
    _assetStacks.clear();
    layerStack = std::make_shared<Usd_LayerStack>(
        rootLayer, sessionLayer, nullptr, std::set<std::string>(mutedLayers.begin(), mutedLayers.end()),
        [this](const std::string& text) { WarnOnce(text); });
}

Usd_LayerStackPtr Usd_StageImpl::FindLayerStack(const std::string& asset, const Usd_LayerStack& referrer,
                                                std::string* why)
{
    const std::set<std::string> muted(mutedLayers.begin(), mutedLayers.end());
    if (muted.count(asset)) {
        return nullptr;
    }
    const ArResolverContextBinder binder(resolverContext);
    const SdfLayerRefPtr root = Usd_OpenLayer(asset, why);
    if (!root || muted.count(root->GetIdentifier())) {
        return nullptr;
    }
    Usd_LayerStackPtr& stack = _assetStacks[{root->GetIdentifier(), referrer.GetVariablesSource()}];
    if (!stack) {
        stack = std::make_shared<Usd_LayerStack>(root, SdfLayerRefPtr(), &referrer, muted,
                                                 [this](const std::string& text) { WarnOnce(text); });
    }
    return stack;
}

void Usd_StageImpl::ReadFallbackTypes()
{
    _fallbackTypes.clear();
    VtDictionary authored;
    for (const SdfLayerRefPtr& layer : {sessionLayer, rootLayer}) {
        VtDictionary opinion;
        if (layer && layer->HasField(SdfPath::AbsoluteRootPath(), UsdTokens->fallbackPrimTypes, &opinion)) {
            VtDictionaryOverRecursive(&authored, opinion);
        }
    }
    const auto isKnown = [](const TfToken& type) {
        return !UsdSchemaRegistry::GetConcreteTypeFromSchemaTypeName(type).IsUnknown();
    };
    for (const auto& [name, value] : authored) {
        const TfToken type(name);
        if (isKnown(type)) {
            continue;
        }
        if (!value.IsHolding<VtTokenArray>()) {
            WarnOnce("fallbackPrimTypes: what stands for '" + name + "' must be an array of tokens");
            continue;
        }
        const VtTokenArray& candidates = value.UncheckedGet<VtTokenArray>();
        const auto found = std::find_if(candidates.cbegin(), candidates.cend(), isKnown);
        if (found != candidates.cend()) {
            _fallbackTypes[type] = *found;
        }
    }
}

TfToken Usd_StageImpl::FindFallbackType(const TfToken& type) const
{
    const auto found = _fallbackTypes.find(type);
    return found == _fallbackTypes.end() ? TfToken() : found->second;
}

std::set<SdfLayerRefPtr> Usd_StageImpl::GetUsedLayers() const
{
    std::set<SdfLayerRefPtr> layers;
    for (const Usd_LayerStack::Entry& entry : layerStack->GetEntries()) {
        layers.insert(entry.layer);
    }
    dependencies.CollectLayers(&layers);
    return layers;
}

void Usd_StageImpl::FollowLayers()
{
    const std::set<SdfLayerRefPtr> used = GetUsedLayers();
    for (auto followed = _followed.begin(); followed != _followed.end();) {
        if (used.count(followed->first)) {
            ++followed;
        } else {
            TfNotice::Revoke(followed->second);
            followed = _followed.erase(followed);
        }
    }
    for (const SdfLayerRefPtr& layer : used) {
        if (_followed.count(layer) == 0) {
            _followed[layer] = TfNotice::Register(TfCreateWeakPtr(this), &Usd_StageImpl::_OnLayersChanged,
                                                  SdfLayerHandle(layer));
        }
    }
}

void Usd_StageImpl::_OnLayersChanged(const SdfNotice::LayersDidChangeSentPerLayer& notice)
{
    // Each changed layer sends the same list of changes.
    if (notice.GetSerialNumber() == _lastSerialNumber) {
        return;
    }
    _lastSerialNumber = notice.GetSerialNumber();
    const UsdStageRefPtr keepAlive(stage);
    Usd_ChangeProcessor(*this).Process(notice.GetChangeListVec());
}

std::string Usd_StageImpl::GetCanonicalIdentifier(const std::string& identifier) const
{
    const SdfLayerHandle layer = SdfLayer::FindRelativeToLayer(SdfLayerHandle(rootLayer), identifier);
    if (layer) {
        return layer->GetIdentifier();
    }
    return SdfLayer::IsAnonymousLayerIdentifier(identifier)
               ? identifier
               : SdfComputeAssetPathRelativeToLayer(SdfLayerHandle(rootLayer), identifier);
}

void Usd_StageImpl::WarnOnceOf(const std::string& kind, const std::string& text)
{
    if (_warnings.insert(kind).second) {
        TF_WARN("%s", text.c_str());
    }
}

Usd_PrimDataPtr Usd_StageImpl::FindPrototype(const SdfPath& instance) const
{
    const Usd_Prototype* const prototype = prototypes.FindForInstance(instance);
    return prototype ? prims.Find(prototype->path) : nullptr;
}

SdfPath Usd_StageImpl::GetPathInPrototype(const SdfPath& path) const
{
    SdfPath mapped = path;
    // Prototypes may hold instances: each round leads one prototype further in.
    for (bool isMapped = prototypes.HasInstances(); isMapped;) {
        isMapped = false;
        for (SdfPath above = mapped.GetPrimPath().GetParentPath(); above.IsPrimPath() && !isMapped;
             above = above.GetParentPath()) {
            if (const Usd_Prototype* const prototype = prototypes.FindForInstance(above)) {
                mapped = mapped.ReplacePrefix(above, prototype->path);
                isMapped = true;
            }
        }
    }
    return mapped;
}

UsdPrim Usd_StageImpl::GetPrimOrProxy(const SdfPath& path) const
{
    if (const Usd_PrimDataPtr prim = prims.Find(path)) {
        return Usd_ObjectAccess::MakePrim(prim);
    }
    const SdfPath inside = path.IsPrimPath() ? GetPathInPrototype(path) : SdfPath();
    const Usd_PrimDataPtr prim = inside.IsEmpty() || inside == path ? nullptr : prims.Find(inside);
    return prim ? Usd_ObjectAccess::MakePrim(prim, path) : UsdPrim();
}

Usd_PathMapping Usd_StageImpl::GetInstanceMapping(const UsdPrim& prim) const
{
    const SdfPath& inside = Usd_ObjectAccess::GetData(prim)->GetPath();
    const SdfPath top = inside.GetPrefixes().front();
    const Usd_Prototype* const prototype = prototypes.FindByPath(top);
    std::vector<Usd_PathMapping::Pair> pairs{{SdfPath::AbsoluteRootPath(), SdfPath::AbsoluteRootPath()}};
    if (prototype) {
        // As many names as the prim's path has below the prototype's, the proxy's has below the instance's.
        SdfPath seenFrom = prim.GetPath();
        for (size_t i = inside.GetPathElementCount(); i > top.GetPathElementCount(); --i) {
            seenFrom = seenFrom.GetParentPath();
        }
        const Usd_PrimData* const source = prims.Find(prototype->source);
        pairs.emplace_back(source ? source->GetSourcePrimIndex().GetPath() : prototype->source, seenFrom);
    }
    return Usd_PathMapping(std::move(pairs), SdfLayerOffset());
}

UsdProperty Usd_ObjectAccess::MakeProperty(UsdObjType type, const UsdPrim& prim, const TfToken& name)
{
    return UsdProperty(type, prim._prim, prim._proxyPrimPath, name);
}

PXR_NAMESPACE_CLOSE_SCOPE
