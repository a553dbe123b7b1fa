#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_StageImpl;

/// Computes where prims get their opinions from.
class Usd_PrimIndexer
{
public:
    explicit Usd_PrimIndexer(Usd_StageImpl& stage) : _stage(stage) {}

    Usd_PrimIndexPtr ComputePseudoRoot() const { return _ComputePseudoRoot(_GetStageStack()); }
    Usd_PrimIndexPtr ComputeChild(const Usd_PrimIndex& parent, const TfToken& name);

    // What following arcs needs.

    /// The layers of an asset. Null, with the reason in words, when it cannot be read; without one when it is
    /// muted.
    Usd_LayerStackPtr FindLayerStack(const std::string& asset, std::string* why);
    /// The index of a prim in a layer stack of its own; null while that index itself is being computed.
    Usd_PrimIndexPtr FindIndex(const Usd_LayerStackPtr& layerStack, const SdfPath& path);
    /// Whether so many indexes are being computed, each for the one before, that the stack has no room for
    /// more.
    bool IsDeep() const { return _building >= 100 || _underWay.size() >= 2500; }
    /// Makes nodes that the stage counts, once they are filled and Count() was called, until they go.
    std::shared_ptr<Usd_PrimIndexNodes> MakeNodes() const;
    void Count(const Usd_PrimIndexNodes& nodes) const;
    /// Remembers that what is written at a site concerns a prim of the stage.
    void AddDependency(const SdfPath& prim, const Usd_LayerStackPtr& layerStack, const SdfPath& site);
    void Warn(const std::string& text) { WarnOnceOf(text, text); }
    /// Posts only the first warning of a kind.
    void WarnOnceOf(const std::string& kind, const std::string& text);

private:
    using _Site = std::pair<const Usd_LayerStack*, SdfPath>;

    static Usd_PrimIndexPtr _ComputePseudoRoot(const Usd_LayerStackPtr& layerStack);
    const Usd_LayerStackPtr& _GetStageStack() const;

    Usd_StageImpl& _stage;
    std::map<_Site, Usd_PrimIndexPtr> _indexes; // of prims that arcs lead below
    std::set<_Site> _underWay;
    int _building = 0; // indexes that follow arcs
};

PXR_NAMESPACE_CLOSE_SCOPE
