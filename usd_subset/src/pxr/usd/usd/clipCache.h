#pragma once

#include "pxr/usd/usd/clipSet.h"

#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <map>
#include <memory>
#include <set>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndex;

/// The sets of clips of a stage by the prims that they are written on. They hold for what is below, too.
class Usd_ClipCache
{
public:
    using Sets = std::vector<Usd_ClipSetPtr>;

    /// Finds the sets of a prim, after those of its ancestors.
    /// Returns: whether there are any.
    /// Logs: a warning for each set that is wrong.
    bool Populate(const SdfPath& prim, const Usd_PrimIndex& index);
    /// Forgets the sets of a prim and all below it. Their layers stay open until DropRetired().
    void InvalidateBelow(const SdfPath& prim);
    void DropRetired() { _retired.clear(); }

    /// The sets that may give values to a prim: its own, then those of its ancestors.
    const Sets& Get(const SdfPath& prim) const;

    /// Adds the layers that were opened for clips.
    void CollectLayers(std::set<SdfLayerRefPtr>* layers) const;
    /// Reads open clip layers again and brings generated manifests up to date.
    void Reload();

private:
    std::set<Usd_ClipSetPtr> _GetAll() const;
    void _ReuseManifest(const SdfPath& prim, Usd_ClipSetDefinition* definition) const;

    std::map<SdfPath, Sets> _sets;
    std::map<SdfPath, Sets> _retired;
    const std::shared_ptr<Usd_ClipWarnings> _warnings = std::make_shared<Usd_ClipWarnings>();
};

PXR_NAMESPACE_CLOSE_SCOPE
