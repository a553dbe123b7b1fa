#include "pxr/usd/usd/primIndexBuilder.h"

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/base/tf/stringUtils.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// A prim has a handful of sites; arcs that multiply each other end here.
constexpr int kMaxNodes = 1000;
constexpr int kMaxAdded = 20 * kMaxNodes; // those included that lead nowhere in the end
// Each arc on the way costs as much as all before it.
constexpr int kMaxArcDepth = 100;
// The same for arcs below root prims, each of which is composed for the one before.
constexpr int kMaxFrames = 20;

// Where internal references lead within one layer stack, all other paths map, too; payloads are not asked for
// by these.
SdfPath mapByArc(const Usd_PathMapping& mapping, Usd_ArcType arc, const SdfPath& path)
{
    const bool isAssetArc = arc == Usd_ArcType::Reference || arc == Usd_ArcType::Payload;
    if (!isAssetArc || !mapping.HasRootIdentity()) {
        return mapping.MapSourceToTarget(path);
    }
    const std::vector<Usd_PathMapping::Pair> pairs(mapping.GetPairs().begin() + 1, mapping.GetPairs().end());
    return Usd_PathMapping(pairs, SdfLayerOffset()).MapSourceToTarget(path);
}

SdfPath mapToRoot(const Usd_PrimGraph& graph, int node, const SdfPath& path)
{
    SdfPath mapped = graph[node].toStage.MapSourceToTarget(path);
    if (mapped == path && graph[node].toStage.HasRootIdentity()) {
        for (; node > 0 && !mapped.IsEmpty(); node = graph[node].parent) {
            mapped = mapByArc(graph[node].toParent, graph[node].arc, mapped);
        }
    }
    return mapped;
}

} // namespace

Usd_PathMapping Usd_PrimIndexBuilder::_MakeMapping(const SdfPath& source, int target,
                                                   const SdfLayerOffset& offset) const
{
    const SdfPath path = _graph[target].path.StripAllVariantSelections();
    const Usd_PathMapping mapping({{source, path}}, offset);
    const Usd_Relocates& relocates = _graph[target].layerStack->GetRelocates();
    return relocates.IsEmpty() ? mapping : relocates.GetMapping(path).Compose(mapping);
}

Usd_GraphNode Usd_PrimIndexBuilder::_MakeArc(int parent, Usd_ArcType type, const SdfPath& path) const
{
    Usd_GraphNode arc;
    arc.layerStack = _graph[parent].layerStack;
    arc.path = path;
    arc.arc = type;
    arc.parent = parent;
    arc.origin = parent;
    arc.depth = Usd_GetNamespaceDepth(_graph[parent].path);
    return arc;
}

// The arc of a node once the graph is part of the outer one.
Usd_ArcType Usd_PrimIndexBuilder::_GetFinalArc(int node) const
{
    return node == 0 && _frame ? _frame->arc.arc : _graph[node].arc;
}

bool Usd_PrimIndexBuilder::_MakesCycle(const Usd_GraphNode& arc) const
{
    if (arc.arc == Usd_ArcType::Variant) {
        return false;
    }
    if (Usd_IsClassArc(arc.arc) && arc.parent != arc.origin) {
        // Below what was moved, implied classes have sites that mean nothing.
        const Usd_PrimIndexBuilder* builder = this;
        int node = arc.parent;
        while (Usd_IsClassArc(builder->_GetFinalArc(node))) {
            const bool isTop = node == 0;
            node = isTop ? builder->_frame->arc.parent : builder->_graph[node].parent;
            builder = isTop ? &builder->_frame->outer : builder;
        }
        if (builder->_GetFinalArc(node) == Usd_ArcType::Relocate) {
            return false;
        }
    }
    SdfPath path = arc.path;
    int node = arc.parent;
    for (const Usd_PrimIndexBuilder* builder = this;; builder = &builder->_frame->outer) {
        for (; node >= 0; node = builder->_graph[node].parent) {
            const Usd_GraphNode& above = builder->_graph[node];
            if (above.layerStack == arc.layerStack &&
                (above.path.HasPrefix(path) || path.HasPrefix(above.path))) {
                return true;
            }
        }
        if (!builder->_frame) {
            return false;
        }
        // What is above the arc's target now will be at it in the outer graph.
        const SdfPath& top = builder->_graph[0].path;
        const SdfPath& requested = builder->_frame->arc.path;
        path = path == top ? requested : requested.ReplacePrefix(top, path);
        node = builder->_frame->arc.parent;
    }
}

bool Usd_PrimIndexBuilder::_IsDuplicate(const Usd_GraphNode& arc) const
{
    SdfPath path = arc.path;
    for (const Usd_PrimIndexBuilder* builder = this;; builder = &builder->_frame->outer) {
        if (builder->_graph.FindContributor(arc.layerStack, path) >= 0) {
            return true;
        }
        if (!builder->_frame) {
            return false;
        }
        path = builder->_frame->arc.path.ReplacePrefix(builder->_graph[0].path, path);
    }
}

// How many arcs lead from the prim to a node.
int Usd_PrimIndexBuilder::_GetArcDepth(int node) const
{
    int depth = _frame ? _frame->outer._GetArcDepth(_frame->arc.parent) + 1 : 0;
    for (; node > 0; node = _graph[node].parent) {
        ++depth;
    }
    return depth;
}

bool Usd_PrimIndexBuilder::_IsTooMuch(int parent)
{
    Usd_PrimIndexBuilder* outermost = this;
    while (outermost->_frame) {
        outermost = &outermost->_frame->outer;
    }
    // One such prim is mostly followed by many, for the same reason.
    if (++outermost->_added > kMaxAdded || _graph.GetSize() >= kMaxNodes) {
        _indexer.WarnOnceOf("nodes",
                            TfStringPrintf("The arcs of prim <%s> lead to more than %d places; the rest was "
                                           "left out, here and on other prims that do so.",
                                           _path.GetText(), kMaxNodes));
        return true;
    }
    int frames = 0;
    for (const _Frame* frame = _frame; frame; frame = frame->outer._frame) {
        ++frames;
    }
    if (frames >= kMaxFrames) {
        _indexer.WarnOnceOf(
            "frames", TfStringPrintf("The arcs of prim <%s> lead on below root prims more than %d times; "
                                     "the rest was left out, here and on other prims that do so.",
                                     _path.GetText(), kMaxFrames));
        return true;
    }
    if (_GetArcDepth(parent) >= kMaxArcDepth) {
        _indexer.WarnOnceOf("arcs",
                            TfStringPrintf("The arcs of prim <%s> lead on through more than %d others; the "
                                           "rest was left out, here and on other prims that do so.",
                                           _path.GetText(), kMaxArcDepth));
        return true;
    }
    return false;
}

int Usd_PrimIndexBuilder::_AddArc(Usd_GraphNode arc, _ArcOptions options)
{
    if (_MakesCycle(arc)) {
        _Warn(arc.parent,
              TfStringPrintf("The arc to <%s> was left out: it leads back to where it comes from. "
                             "Remove the cycle.",
                             arc.path.GetText()));
        return -1;
    }
    options.skipsDuplicates = options.skipsDuplicates || (_frame && _frame->skipsDuplicates);
    if ((options.skipsDuplicates && _IsDuplicate(arc)) || _IsTooMuch(arc.parent)) {
        return -1;
    }
    int added = -1;
    if (!options.withAncestors) {
        added = _graph.Add(std::move(arc));
        if (!options.contributes) {
            _graph.SetInert(added, true);
            _graph[added].restrictedDepth = 1;
        }
    } else {
        const _Frame frame{*this, arc, options.skipsDuplicates};
        Usd_PrimIndexBuilder builder(frame);
        builder._BuildTo(arc.layerStack, arc.path, options.contributes);
        added = _graph.AddGraph(builder._graph, arc);
        _hasPayloads = _hasPayloads || builder._hasPayloads;
        options.skipsWrittenArcs = true;
    }
    _AddTasksForNew(added, options);
    if (_graph[added].path.IsAbsoluteRootPath()) {
        _SetInertBelow(added);
    }
    return added;
}

void Usd_PrimIndexBuilder::_SetInertBelow(int node)
{
    _graph.SetInert(node, true);
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        _SetInertBelow(child);
    }
}

void Usd_PrimIndexBuilder::_FollowAssetArcs(int node, const std::vector<Usd_AssetArc>& arcs, Usd_ArcType type)
{
    for (size_t i = 0; i != arcs.size(); ++i) {
        _FollowAssetArc(node, arcs[i], type, static_cast<int>(i));
    }
}

void Usd_PrimIndexBuilder::_FollowAssetArc(int node, const Usd_AssetArc& arc, Usd_ArcType type, int sibling)
{
    SdfLayerOffset written = arc.written;
    if (!written.IsValid() || !written.GetInverse().IsValid()) {
        _Warn(node, TfStringPrintf("The arc to @%s@ has an offset that cannot be inverted; none is used.",
                                   arc.asset.c_str()));
        written = SdfLayerOffset();
    }
    SdfLayerOffset offset = arc.offset * written;
    Usd_LayerStackPtr target = _graph[node].layerStack;
    if (!arc.asset.empty()) {
        std::string why;
        target = _indexer.FindLayerStack(arc.fullAsset, *_graph[node].layerStack, &why);
        if (!target) {
            if (!why.empty()) {
                _Warn(node,
                      TfStringPrintf("The arc to @%s@ was left out: %s.", arc.asset.c_str(), why.c_str()));
            }
            return;
        }
        const double sourceRate = arc.source->GetTimeCodesPerSecond();
        if (sourceRate != target->GetTimeCodesPerSecond()) {
            offset.SetScale(offset.GetScale() * sourceRate / target->GetTimeCodesPerSecond());
        }
    }
    const SdfPath path = _FindTargetPath(node, arc, *target->GetRootLayer());
    if (path.IsEmpty()) {
        return;
    }
    Usd_GraphNode added = _MakeArc(node, type, path);
    added.layerStack = target;
    added.sibling = sibling;
    added.toParent = _MakeMapping(path, node, offset);
    if (arc.asset.empty()) {
        added.toParent = added.toParent.AddRootIdentity();
    }
    _ArcOptions options;
    // The root stands for a default prim that is still to come.
    options.contributes = !path.IsAbsoluteRootPath();
    options.withAncestors = !path.IsRootPrimPath();
    _AddArc(std::move(added), options);
}

SdfPath Usd_PrimIndexBuilder::_FindTargetPath(int node, const Usd_AssetArc& arc, const SdfLayer& root) const
{
    if (arc.primPath.IsEmpty()) {
        const SdfPath path = root.GetDefaultPrimAsPath();
        if (path.IsEmpty()) {
            _Warn(node, TfStringPrintf("The arc to @%s@ was left out: it names no prim, and the layer has no "
                                       "default prim. Name one of them.",
                                       arc.asset.c_str()));
            return SdfPath::AbsoluteRootPath();
        }
        return path;
    }
    if (!arc.primPath.IsAbsolutePath() || !arc.primPath.IsPrimPath() ||
        arc.primPath.ContainsPrimVariantSelection()) {
        _Warn(node,
              TfStringPrintf("The arc to @%s@<%s> was left out: it must name a prim by its absolute path.",
                             arc.asset.c_str(), arc.primPath.GetText()));
        return SdfPath();
    }
    return arc.primPath;
}

void Usd_PrimIndexBuilder::_FollowPayloads(int node)
{
    const std::vector<Usd_AssetArc> payloads = Usd_FindPayloads(_graph[node], _indexer);
    if (payloads.empty()) {
        return;
    }
    _hasPayloads = true;
    if (_IsPayloadIncluded(node)) {
        _FollowAssetArcs(node, payloads, Usd_ArcType::Payload);
    }
}

// The load rules are asked at the path that the node has on the stage. Where it has none, above the target of
// an arc, nobody could ask for the payload, and it is there.
bool Usd_PrimIndexBuilder::_IsPayloadIncluded(int node) const
{
    SdfPath path = mapToRoot(_graph, node, _graph[node].path.StripAllVariantSelections());
    for (const _Frame* frame = _frame; frame && !path.IsEmpty(); frame = frame->outer._frame) {
        path = mapByArc(frame->arc.toParent, frame->arc.arc, path);
        path = path.IsEmpty() ? path : mapToRoot(frame->outer._graph, frame->arc.parent, path);
    }
    return path.IsEmpty() || _indexer.IsLoaded(path);
}

bool Usd_PrimIndexBuilder::_HasSpecsBelow(int node) const
{
    const bool isHere = _graph.GetDepthBelowIntroduction(node) == 0;
    std::vector<int> todo{node};
    while (!todo.empty()) {
        const int at = todo.back();
        todo.pop_back();
        if (isHere ? _graph[at].HasSpecs()
                   : !Usd_FindSpecs(*_graph[at].layerStack, _graph.GetPathAtIntroduction(at)).empty()) {
            return true;
        }
        todo.insert(todo.end(), _graph[at].children.begin(), _graph[at].children.end());
    }
    return false;
}

// What references and payloads lead to must exist.
void Usd_PrimIndexBuilder::_CheckTarget(int node)
{
    if (_HasSpecsBelow(node)) {
        return;
    }
    const int parent = _graph[node].parent;
    const bool isInternal = _graph[parent].layerStack == _graph[node].layerStack;
    _Warn(parent,
          TfStringPrintf("The arc to @%s@<%s> leads to no prim.",
                         isInternal ? "" : _graph[node].layerStack->GetRootLayer()->GetIdentifier().c_str(),
                         _graph.GetPathAtIntroduction(node).GetText()));
}

PXR_NAMESPACE_CLOSE_SCOPE
