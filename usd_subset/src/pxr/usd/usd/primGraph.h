#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A node of a graph that is being built: what becomes a node of an index, and the site that it looks at.
struct Usd_GraphNode
{
    Usd_PrimIndexNode node;
    SdfPath path;                                    ///< of the site; variant selections included
    SdfPath plainPath;                               ///< the same without variant selections
    std::vector<const Usd_LayerStack::Entry*> specs; ///< the layers that have a spec there, strongest first
    std::vector<std::string> variantSets;            ///< whose selection is still open, strongest first
    std::vector<int> children;
};

/// A tree of sites that contribute to one prim, while arcs are followed.
class Usd_PrimGraph
{
public:
    /// Adds a node below another; -1 makes it the root.
    int Add(Usd_GraphNode node);

    Usd_GraphNode& operator[](int i) { return _nodes[static_cast<size_t>(i)]; }
    const Usd_GraphNode& operator[](int i) const { return _nodes[static_cast<size_t>(i)]; }
    int GetSize() const { return static_cast<int>(_nodes.size()); }

    /// Whether a site is in the graph already.
    bool HasSite(const Usd_LayerStackPtr& layerStack, const SdfPath& path) const;
    /// Whether the site, one above or one below it is on the way from a node to the root.
    bool MakesCycle(int node, const Usd_LayerStackPtr& layerStack, const SdfPath& path) const;

    /// How many arcs lead from the root to a node.
    int GetArcDepth(int node) const;

    /// All nodes, strongest first. What prims specialize is weaker than everything else.
    std::vector<int> GetStrengthOrder() const;

private:
    void _Visit(int node, std::vector<int>* order, std::vector<int>* specialized) const;
    bool _IsStronger(int a, int b) const;

    std::vector<Usd_GraphNode> _nodes;
};

PXR_NAMESPACE_CLOSE_SCOPE
