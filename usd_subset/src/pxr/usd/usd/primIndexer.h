#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>

#include <memory>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_StageImpl;

/// Computes where prims get their opinions from.
class Usd_PrimIndexer
{
public:
    explicit Usd_PrimIndexer(Usd_StageImpl& stage) : _stage(stage) {}

    Usd_PrimIndexPtr ComputePseudoRoot() const;
    Usd_PrimIndexPtr ComputeChild(const Usd_PrimIndex& parent, const TfToken& name);

    // What following arcs needs.

    /// The layers of an asset. Null, with the reason in words, when it cannot be read; without one when it is
    /// muted.
    /// @param referrer the layers that lead there; their expression variables count there
    Usd_LayerStackPtr FindLayerStack(const std::string& asset, const Usd_LayerStack& referrer,
                                     std::string* why);
    /// Whether payloads on a prim of the stage are wanted.
    bool IsLoaded(const SdfPath& path) const;
    /// Makes a graph that the stage counts the nodes of, once they are filled and Count() was called, until
    /// it goes.
    std::shared_ptr<Usd_PrimIndex::Graph> MakeGraph() const;
    void Count(const Usd_PrimIndex::Graph& graph) const;
    /// Remembers that what is written at a site concerns a prim of the stage.
    void AddDependency(const SdfPath& prim, const Usd_LayerStackPtr& layerStack, const SdfPath& site);
    void Warn(const std::string& text) { WarnOnceOf(text, text); }
    /// Posts only the first warning of a kind.
    void WarnOnceOf(const std::string& kind, const std::string& text);

private:
    Usd_StageImpl& _stage;
};

PXR_NAMESPACE_CLOSE_SCOPE
