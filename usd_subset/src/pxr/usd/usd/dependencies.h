#pragma once

#include "pxr/usd/usd/layerStack.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <map>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Which prims of a stage take opinions from which sites by composition arcs, so that a change of the site's
/// layers finds them. What is below a site concerns what is below the prim.
class Usd_Dependencies
{
public:
    void Add(const SdfPath& prim, const Usd_LayerStackPtr& layerStack, const SdfPath& site);
    /// Forgets what a prim and all below it depend on.
    void RemoveBelow(const SdfPath& prim);
    void Clear();

    /// The paths of the stage that a path of a layer contributes to.
    /// @param withBelow whether also prims that take opinions from somewhere below the path
    void FindAffected(const SdfLayer* layer, const SdfPath& path, bool withBelow,
                      std::set<SdfPath>* affected) const;
    /// The prims that depend on any site of a layer.
    std::set<SdfPath> FindPrims(const SdfLayer* layer) const;
    bool HasLayer(const SdfLayer* layer) const;
    /// Adds the layers of all sites.
    void CollectLayers(std::set<SdfLayerRefPtr>* layers) const;

private:
    using _Sites = std::map<SdfPath, std::set<SdfPath>>; // to the prims

    void _AddStack(const Usd_LayerStackPtr& layerStack);
    void _RemoveStack(const Usd_LayerStackPtr& layerStack);

    std::map<Usd_LayerStackPtr, _Sites> _sites;
    std::unordered_map<const SdfLayer*, std::set<Usd_LayerStackPtr>> _stacks; // of those, by layer
    std::map<SdfPath, std::vector<std::pair<Usd_LayerStackPtr, SdfPath>>> _byPrim;
};

PXR_NAMESPACE_CLOSE_SCOPE
