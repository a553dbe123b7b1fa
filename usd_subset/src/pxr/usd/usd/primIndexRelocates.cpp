#include "pxr/usd/usd/primIndexBuilder.h"

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/base/tf/stringUtils.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

void Usd_PrimIndexBuilder::_LeaveOut(int node)
{
    _graph.SetCulled(node);
    _graph[node].restrictedDepth = 1; // nor does it choose variants above
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        _LeaveOut(child);
    }
}

// What other relocates move away from below a node does not stay there.
void Usd_PrimIndexBuilder::_LeaveOutRelocated(int node)
{
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        const Usd_GraphNode& at = _graph[child];
        if (at.arc == Usd_ArcType::Relocate) {
            continue;
        }
        if (at.CanContribute() && at.layerStack->GetRelocates().IsSource(at.path)) {
            _LeaveOut(child);
        } else {
            _LeaveOutRelocated(child);
        }
    }
}

// A prim that was moved here takes the opinions from where it was, but for those that are written there in
// the layers that move it.
void Usd_PrimIndexBuilder::_FollowRelocation(int node)
{
    const SdfPath source = _graph[node].layerStack->GetRelocates().FindSource(_graph[node].path);
    if (source.IsEmpty()) {
        return;
    }
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        if (_graph[child].arc != Usd_ArcType::Variant) {
            _LeaveOut(child);
        }
    }
    _ArcOptions options;
    options.contributes = false;
    options.withAncestors = true;
    // The arcs whose targets are moved have the change of paths in their mappings.
    const int added = _AddArc(_MakeArc(node, Usd_ArcType::Relocate, source), options);
    if (added < 0) {
        return;
    }
    for (const Usd_LayerStack::Entry* const entry : _graph[added].specs) {
        _indexer.Warn(TfStringPrintf("The opinions on <%s> in @%s@ were left out: the prim is moved to <%s>. "
                                     "Write them there.",
                                     source.GetText(), entry->layer->GetIdentifier().c_str(),
                                     _graph[node].path.GetText()));
    }
    _LeaveOutRelocated(added);
}

// Classes below what was moved are found in stronger layer stacks by the path that it was moved from.
void Usd_PrimIndexBuilder::_FollowImpliedRelocation(int node)
{
    const int parent = _graph[node].parent;
    const int outer = parent < 0 ? -1 : _graph[parent].parent;
    if (_graph[node].isDueToAncestor || outer < 0) {
        return;
    }
    const SdfPath source = _graph[parent].toParent.MapSourceToTarget(_graph[node].path);
    const std::vector<int>& siblings = _graph[outer].children;
    const bool isThere = std::any_of(siblings.begin(), siblings.end(), [&](int sibling) {
        return _graph[sibling].arc == Usd_ArcType::Relocate && _graph[sibling].path == source;
    });
    if (source.IsEmpty() || isThere) {
        return;
    }
    Usd_GraphNode arc = _MakeArc(outer, Usd_ArcType::Relocate, source);
    arc.origin = node;
    _ArcOptions options;
    options.contributes = false;
    _AddArc(std::move(arc), options);
}

PXR_NAMESPACE_CLOSE_SCOPE
