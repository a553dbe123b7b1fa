#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/pxr.h>

#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A node of a graph that is being built: what becomes a node of an index, and what is known of its site.
struct Usd_GraphNode : Usd_PrimIndexNode
{
    bool isCulled = false;                           ///< nothing below contributes; to be left out
    std::vector<const Usd_LayerStack::Entry*> specs; ///< the layers that have a spec there, strongest first
    std::vector<int> children;                       ///< strongest first

    bool HasSpecs() const { return !specs.empty(); }
    /// Whether what is written at the site counts.
    bool CanContribute() const { return !isInert && !isCulled; }
};

/// A tree of sites that contribute to one prim, while arcs are followed.
class Usd_PrimGraph
{
public:
    Usd_PrimGraph() = default;
    /// The graph of a single site.
    Usd_PrimGraph(const Usd_LayerStackPtr& layerStack, const SdfPath& path);

    /// Adds a node below its parent, among its siblings by strength, and finds its specs.
    int Add(Usd_GraphNode node);
    /// Adds all nodes of another graph; its root becomes the node that is given.
    int AddGraph(const Usd_PrimGraph& graph, const Usd_GraphNode& top);

    Usd_GraphNode& operator[](int i) { return _nodes[static_cast<size_t>(i)]; }
    const Usd_GraphNode& operator[](int i) const { return _nodes[static_cast<size_t>(i)]; }
    int GetSize() const { return static_cast<int>(_nodes.size()); }

    /// Makes a graph from that of a finished index, at the index's prim.
    void Load(const Usd_PrimIndex& index);
    /// Moves all sites on to a child of the prim.
    void AppendChild(const TfToken& name);
    /// Marks nodes that contribute nothing, here or below.
    void Cull(const Usd_LayerStackPtr& rootStack);
    /// Removes the nodes that are culled, but for those that the order of others needs. The rest comes to
    /// stand in the order of strength.
    void RemoveCulled();

    void SetInert(int node, bool isInert);
    void SetCulled(int node);

    /// How many levels below the prim that its arc was written on a node is.
    int GetDepthBelowIntroduction(int node) const;
    /// The site's path where the arc was written.
    SdfPath GetPathAtIntroduction(int node) const;
    bool HasSameSite(int a, int b) const
    {
        return (*this)[a].layerStack == (*this)[b].layerStack && (*this)[a].path == (*this)[b].path;
    }
    bool IsBelow(int node, int above) const;
    /// Whether the arc of a node is there because another one like it is, elsewhere in the graph.
    bool IsImplied(int node) const
    {
        return Usd_IsClassArc((*this)[node].arc) && (*this)[node].parent != (*this)[node].origin;
    }
    /// Whether a node stands for one below that specializes, at the weak end of the graph.
    bool IsPropagatedSpecialize(int node) const;
    bool HasClassChild(int node) const;
    bool HasSpecializeChild(int node) const;
    /// The node whose classes a node of a class arc is one of, and the first of these classes.
    std::pair<int, int> FindClassHierarchy(int node) const;
    /// A node that is neither inert nor culled at a site; -1 when there is none.
    int FindContributor(const Usd_LayerStackPtr& layerStack, const SdfPath& path) const;

    /// Less than zero when node a is stronger than b, greater than zero when it is weaker.
    int CompareStrength(int a, int b) const;
    /// The same for children of one node.
    int CompareSiblings(int a, int b) const;
    /// All nodes, strongest first.
    std::vector<int> GetStrengthOrder() const;

private:
    void _InsertAmongSiblings(int node);
    int _CompareSpecializes(int a, int b) const;
    int _CompareSpecializesOfOneOrigin(int a, int b) const;
    int _CompareInOrder(int node, int a, int b) const;
    std::pair<int, int> _FindOriginRoot(int node) const;
    int _GetHierarchyDepth(int node) const;
    bool _CanBeCulled(int node, const Usd_LayerStackPtr& rootStack) const;
    void _CullBelow(int node, const Usd_LayerStackPtr& rootStack, std::vector<int>* culled);
    bool _CullSites(int node, const std::vector<int>& sites);
    std::vector<char> _FindNeeded() const;
    void _RecordRestriction(int node, bool isRestricted);

    std::vector<Usd_GraphNode> _nodes;
};

/// The number of prims on the way to a path; variant selections are none.
int Usd_GetNamespaceDepth(const SdfPath& path);

/// The layers of a layer stack that have a spec at a path, strongest first.
std::vector<const Usd_LayerStack::Entry*> Usd_FindSpecs(const Usd_LayerStack& layerStack,
                                                        const SdfPath& path);

PXR_NAMESPACE_CLOSE_SCOPE
