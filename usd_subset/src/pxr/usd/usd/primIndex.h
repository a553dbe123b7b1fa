#pragma once

#include "pxr/usd/usd/layerStack.h"

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/layerOffset.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/pathMapping.h>

#include <cstdint>
#include <memory>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// How a node came into a prim's index, in the order of strength among the arcs of one prim.
enum class Usd_ArcType : std::uint8_t
{
    Root,
    Inherit,
    Variant,
    Relocate,
    Reference,
    Payload,
    Specialize
};

/// Whether an arc leads to a class, whose counterparts in stronger layer stacks count, too.
inline bool Usd_IsClassArc(Usd_ArcType arc)
{
    return arc == Usd_ArcType::Inherit || arc == Usd_ArcType::Specialize;
}

/// One place in scene description that contributes to a prim: a part of a layer stack, and the arc that leads
/// to it. Prims below share the nodes with the prim that the arcs were written on.
struct Usd_PrimIndexNode
{
    Usd_LayerStackPtr layerStack;
    Usd_PathMapping toParent; ///< paths and times of the node's namespace to those of its parent
    Usd_PathMapping toStage;  ///< the same to those of the index's root
    SdfPath path; ///< of the site, variant selections included, for the prim that nodes were made for
    Usd_ArcType arc = Usd_ArcType::Root;
    bool isInert = false;         ///< whether what is written there is left out
    bool isCulled = false;        ///< whether only the order of others needs it
    bool isDueToAncestor = false; ///< whether the arc was written above the prim, or above where arcs lead
    std::int32_t parent = -1;     ///< the node that the arc leads from
    std::int32_t origin = -1;     ///< the node whose arc this one follows; the parent where it is written
    std::int32_t sibling = 0;     ///< the place of the arc among those that are written with it
    std::int32_t depth = 0;       ///< of the prim that the arc was written on, in its namespace
    std::uint32_t restrictedDepth = 0; ///< the length of paths whose opinions count no more; zero when all do
};

using Usd_PrimIndexNodes = std::vector<Usd_PrimIndexNode>;

/// One spec that contributes to a prim.
struct Usd_SpecSite
{
    SdfLayer* layer;       ///< kept alive by its layer stack
    SdfPath path;          ///< of the prim spec
    SdfLayerOffset offset; ///< from the layer's time to the stage's
    std::uint32_t node;
};

/// Where a prim's opinions come from, strongest first. It does not change once it is made.
class Usd_PrimIndex
{
public:
    /// The nodes that prims share.
    struct Graph
    {
        SdfPath path;
        Usd_PrimIndexNodes nodes;
        bool hasRelocates = false; ///< in any layer stack
    };

    const SdfPath& GetPath() const { return _path; }
    const std::vector<Usd_SpecSite>& GetSites() const { return _sites; }
    const Usd_PrimIndexNodes& GetNodes() const { return _graph->nodes; }
    /// The prim that the nodes were made for: this one, or one above it.
    const SdfPath& GetNodesPath() const { return _graph->path; }
    const Usd_PrimIndexNode& GetNode(const Usd_SpecSite& site) const { return _graph->nodes[site.node]; }
    bool HasSpecs() const { return !_sites.empty(); }
    /// Whether any spec names value clips.
    bool HasClips() const { return _hasClips; }
    bool HasPayloads() const { return _hasPayloads; }
    bool IsInstanceable() const { return _isInstanceable; }
    /// Whether a node's arc was written on this prim, not on one above.
    bool IsDirect(const Usd_PrimIndexNode& node) const
    {
        return node.parent >= 0 && !node.isDueToAncestor && _graph->path == _path;
    }

    /// The path of a node's site for this prim, variant selections included.
    SdfPath GetSitePath(const Usd_PrimIndexNode& node) const;
    /// For each node, whether it or one that came with it says something of this prim; the root's always, and
    /// those that are written on this prim.
    std::vector<bool> FindContributingNodes() const;
    /// The names of the children in their order.
    TfTokenVector ComputeChildNames() const;

private:
    friend class Usd_PrimIndexer;
    friend class Usd_PrimIndexBuilder;
    friend class Usd_Prototypes;

    void _AddChildNames(std::vector<Usd_SpecSite>::const_reverse_iterator first,
                        std::vector<Usd_SpecSite>::const_reverse_iterator last, TfTokenVector* names) const;

    static const std::shared_ptr<const Graph>& _GetEmptyGraph();

    SdfPath _path;
    std::vector<Usd_SpecSite> _sites;
    std::shared_ptr<const Graph> _graph = _GetEmptyGraph();
    bool _hasPayloads = false;
    bool _hasClips = false;
    bool _isInstanceable = false;
};

using Usd_PrimIndexPtr = std::shared_ptr<const Usd_PrimIndex>;

PXR_NAMESPACE_CLOSE_SCOPE
