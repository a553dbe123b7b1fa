#pragma once

#include "pxr/usd/usd/stageImpl.h"

#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Walks over the places of a property of a prim that has clips, strongest first, until a function returns
/// true. Clips count after the layer that names them, also where that layer says nothing of the prim.
/// @param atSite takes the site of the prim's spec and the property's path
/// @param atClips takes the set, its layer stack, the property's path and the offset from the set's source
/// layer to the stage
/// Returns: whether a function returned true.
template <class AtSite, class AtClips>
bool Usd_VisitSitesAndClips(const Usd_PrimData& prim, const TfToken& name, const AtSite& atSite,
                            const AtClips& atClips)
{
    const Usd_PrimIndex& index = prim.GetPrimIndex();
    const Usd_ClipCache::Sets& sets = Usd_StageImpl::Of(*prim.GetStage()).clips.Get(prim.GetPath());
    const std::vector<bool> contributes = index.FindContributingNodes();
    auto site = index.GetSites().begin();
    for (size_t i = 0; i != contributes.size(); ++i) {
        if (!contributes[i]) {
            continue;
        }
        const Usd_PrimIndexNode& node = index.GetNodes()[i];
        const SdfPath path = index.GetSitePath(node).AppendProperty(name);
        for (const Usd_LayerStack::Entry& entry : node.layerStack->GetEntries()) {
            if (site != index.GetSites().end() && site->node == i &&
                site->layer == get_pointer(entry.layer)) {
                if (atSite(*site, path)) {
                    return true;
                }
                ++site;
            }
            for (const Usd_ClipSetPtr& set : sets) {
                if (get_pointer(set->GetSourceLayer()) == get_pointer(entry.layer) &&
                    set->HasValuesOf(node.layerStack.get(), path) &&
                    atClips(*set, *node.layerStack, path, node.toStage.GetTimeOffset() * entry.offset)) {
                    return true;
                }
            }
        }
    }
    return false;
}

PXR_NAMESPACE_CLOSE_SCOPE
