#pragma once

#include "pxr/usd/usd/primGraph.h"
#include "pxr/usd/usd/siteArcs.h"

#include <pxr/pxr.h>

#include <deque>
#include <map>
#include <string>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndexer;

/// Follows the composition arcs of one prim: from its parent's index, and what is written at the prim's
/// sites, to its own index. Arcs that lead nowhere or back to where they came from are left out with one
/// warning each.
class Usd_PrimIndexBuilder
{
public:
    /// @param includePayloads whether the prim's payloads are loaded
    Usd_PrimIndexBuilder(Usd_PrimIndexer& indexer, const SdfPath& path, bool includePayloads)
        : _indexer(indexer), _path(path), _includePayloads(includePayloads)
    {}

    Usd_PrimIndexPtr Build(const Usd_PrimIndex& parent);

private:
    // Adds the nodes of an index, at one of its prim's children, below a node of the graph; -1 as the graph
    // itself.
    int _Graft(const Usd_PrimIndex& index, const TfToken& child, int parent, const Usd_PrimIndexNode& top);
    void _FollowAll();
    void _FollowArcs(int site);
    void _FollowAssetArc(int site, const Usd_AssetArc& arc, Usd_ArcType type);
    bool _HasSpecsFrom(int first) const;
    void _FollowClassArc(int site, const SdfPath& classPath, Usd_ArcType type);
    int _AddArc(int site, Usd_ArcType type, Usd_LayerStackPtr layerStack, const SdfPath& path,
                const SdfLayerOffset& offset, bool keepsNames);
    void _AddImpliedClasses(int classNode);
    bool _FollowNextVariant();
    std::string _FindSelection(const std::string& set, int site, const std::vector<int>& order) const;
    SdfPath _FindTargetPath(int site, const Usd_AssetArc& arc, const SdfLayer& root) const;
    void _Warn(int site, const std::string& text) const;
    Usd_PrimIndexPtr _Finish() const;
    bool _IsInstanceable(const Usd_PrimIndex& index) const;

    Usd_PrimIndexer& _indexer;
    SdfPath _path;
    bool _includePayloads;
    Usd_PrimGraph _graph;
    std::deque<int> _open; // sites whose arcs are to be followed
    bool _hasPayloads = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
