#include "pxr/usd/usd/primIndexBuilder.h"

#include <pxr/base/tf/stringUtils.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Where a class is that a mapping leads from, seen from a path with variant selections.
SdfPath findClassPath(const SdfPath& parent, const Usd_PathMapping& mapping)
{
    if (!parent.ContainsPrimVariantSelection()) {
        return mapping.MapTargetToSource(parent);
    }
    SdfPath variant = parent;
    while (!variant.IsPrimVariantSelectionPath()) {
        variant = variant.GetParentPath();
    }
    return mapping.MapTargetToSource(parent.StripAllVariantSelections())
        .ReplacePrefix(variant.StripAllVariantSelections(), variant);
}

} // namespace

void Usd_PrimIndexBuilder::_FollowClassArcs(int node, const std::vector<SdfPath>& paths, Usd_ArcType type)
{
    for (size_t i = 0; i != paths.size(); ++i) {
        const SdfPath& path = paths[i];
        if (!path.IsAbsolutePath() || !path.IsPrimPath() || path.ContainsPrimVariantSelection()) {
            _Warn(node, TfStringPrintf("The arc to <%s> was left out: it must name a prim.", path.GetText()));
            continue;
        }
        _AddClassArc(node, node, type, _MakeMapping(path, node, SdfLayerOffset()).AddRootIdentity(),
                     static_cast<int>(i), -1);
    }
}

// Adds a class below a node, or finds it there.
// @param ignored the node that the class is implied by; where it leads to the same site it adds no opinions
int Usd_PrimIndexBuilder::_AddClassArc(int parent, int origin, Usd_ArcType type,
                                       const Usd_PathMapping& mapping, int sibling, int ignored)
{
    const SdfPath path = findClassPath(_graph[parent].path, mapping);
    if (path.IsEmpty()) {
        return -1; // no such class can be named there
    }
    Usd_GraphNode arc = _MakeArc(parent, type, path);
    arc.origin = origin;
    arc.sibling = sibling;
    arc.toParent = mapping;
    const int known =
        _FindChildLike(parent, _GetFinalArc(parent), arc, _graph.GetDepthBelowIntroduction(origin));
    if (known >= 0) {
        return known;
    }
    const bool isIgnored =
        ignored >= 0 && _graph[ignored].layerStack == arc.layerStack && _graph[ignored].path == path;
    _ArcOptions options;
    options.contributes = path != _graph[parent].path && !isIgnored;
    options.skipsDuplicates = options.contributes;
    options.withAncestors = options.contributes && !path.IsRootPrimPath();
    return _AddArc(std::move(arc), options);
}

int Usd_PrimIndexBuilder::_FindChildLike(int parent, Usd_ArcType parentArc, const Usd_GraphNode& like,
                                         int depth) const
{
    for (const int child : _graph[parent].children) {
        const Usd_GraphNode& at = _graph[child];
        // Below what was moved, sites may mean nothing; there it counts how they were come by.
        const bool isAlike = parentArc == Usd_ArcType::Relocate
                                 ? at.arc == like.arc && at.toParent == like.toParent &&
                                       _graph.GetDepthBelowIntroduction(at.origin) == depth
                                 : at.layerStack == like.layerStack && at.path == like.path;
        if (isAlike) {
            return child;
        }
    }
    return -1;
}

// Classes of classes are implied as a whole, from the prim on that has the first of them. A class that is
// inherited above belongs to it, too, unless the next one lies inside.
int Usd_PrimIndexBuilder::_FindImpliedClassStart(int node) const
{
    int start = node;
    while (Usd_IsClassArc(_graph[start].arc)) {
        const std::pair<int, int> hierarchy = _graph.FindClassHierarchy(start);
        start = hierarchy.first;
        if (Usd_IsClassArc(_graph[start].arc) &&
            _graph[hierarchy.second].path.HasPrefix(_graph.GetPathAtIntroduction(start))) {
            break;
        }
    }
    return start;
}

// A class that a referenced prim inherits from can be overridden where the prim is referenced: the class of
// the same name in each stronger layer stack counts as inherited there.
void Usd_PrimIndexBuilder::_ImplyClasses(int node)
{
    if (node == 0 || _graph.IsPropagatedSpecialize(node) || !_graph.HasClassChild(node)) {
        return;
    }
    _ImplyClassTree(_graph[node].parent, node, _graph[node].toParent.AddRootIdentity(), true);
}

void Usd_PrimIndexBuilder::_ImplyClassTree(int target, int source, const Usd_PathMapping& transfer,
                                           bool isStart)
{
    if (_graph[target].arc == Usd_ArcType::Relocate) {
        // Classes concern the prim where it is now.
        const Usd_PathMapping outer = _graph[target].toParent.AddRootIdentity().Compose(transfer);
        _ImplyClassTree(_graph[target].parent, source, outer, isStart);
        _AddTask({_TaskType::ImpliedClasses, target});
        return;
    }
    const std::vector<int> children = _graph[source].children;
    for (const int child : children) {
        // The next class of the chain that the source itself belongs to is no class of the target.
        const bool isChain =
            isStart && Usd_IsClassArc(_graph[source].arc) &&
            _graph.GetDepthBelowIntroduction(source) == _graph.GetDepthBelowIntroduction(child);
        if (Usd_IsClassArc(_graph[child].arc) && !isChain) {
            _ImplyClass(target, child, transfer);
        }
    }
}

void Usd_PrimIndexBuilder::_ImplyClass(int target, int source, const Usd_PathMapping& transfer)
{
    const Usd_PathMapping& written = _graph[source].toParent;
    const Usd_PathMapping implied =
        transfer.IsIdentity() ? written
                              : transfer.Compose(written.Compose(transfer.GetInverse())).AddRootIdentity();
    const std::vector<int>& siblings = _graph[target].children;
    const auto known = std::find_if(siblings.begin(), siblings.end(), [&](int sibling) {
        return _graph[sibling].origin == source && _graph[sibling].toParent == implied;
    });
    const int added = known != siblings.end() ? *known
                                              : _AddClassArc(target, source, _graph[source].arc, implied,
                                                             _graph[source].sibling, source);
    if (added >= 0 && _graph.HasClassChild(source)) {
        const Usd_PathMapping inner = implied.GetInverse().Compose(transfer.Compose(_graph[source].toParent));
        _ImplyClassTree(added, source, inner, false);
    }
}

int Usd_PrimIndexBuilder::_FindSpecializeStart(int node) const
{
    int start = -1;
    for (; node > 0; node = _graph[node].parent) {
        start = _graph[node].arc == Usd_ArcType::Specialize ? node : start;
    }
    return start;
}

// What a prim specializes is weaker than everything else: it stands at the root, among the weakest. What is
// found below it there is moved back to where it was written, so that it is implied from there, and then to
// the root again.
void Usd_PrimIndexBuilder::_ImplySpecializes(int node)
{
    if (node == 0) {
        return;
    }
    if (!_graph.IsPropagatedSpecialize(node)) {
        _FindSpecializesForRoot(node);
        return;
    }
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        _MoveToOrigin(_graph[node].origin, child, node);
    }
}

void Usd_PrimIndexBuilder::_FindSpecializesForRoot(int node)
{
    const int parent = _graph[node].parent;
    if (parent != _graph[node].origin && _graph[parent].arc == Usd_ArcType::Relocate &&
        _graph.HasSameSite(parent, node)) {
        return; // a site that means nothing
    }
    if (_graph[node].arc == Usd_ArcType::Specialize) {
        const bool wasInert = !_graph[node].CanContribute();
        const std::uint32_t restrictedDepth = _graph[node].restrictedDepth;
        if (wasInert) {
            _graph.SetInert(node, false);
        }
        _MoveToRoot(0, node, _graph[node].toStage, node);
        if (wasInert) {
            _graph[node].restrictedDepth = restrictedDepth;
        }
    }
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        _FindSpecializesForRoot(child);
    }
}

void Usd_PrimIndexBuilder::_MoveToRoot(int parent, int node, const Usd_PathMapping& mapping, int top)
{
    _ArcOptions options;
    options.skipsSpecializes = true;
    const int moved = _MoveNode(parent, node, mapping, top, options);
    const std::vector<int> children = moved < 0 ? std::vector<int>() : _graph[node].children;
    for (const int child : children) {
        if (_graph[child].arc != Usd_ArcType::Specialize) {
            _MoveToRoot(moved, child, Usd_PathMapping(_graph[child].toParent), top);
        }
    }
}

void Usd_PrimIndexBuilder::_MoveToOrigin(int parent, int node, int top)
{
    _ArcOptions options;
    options.skipsWrittenArcs = true;
    const int moved = _MoveNode(parent, node, Usd_PathMapping(_graph[node].toParent), top, options);
    const std::vector<int> children = moved < 0 ? std::vector<int>() : _graph[node].children;
    for (const int child : children) {
        _MoveToOrigin(moved, child, top);
    }
}

// Gives a node's place to one below another parent; the node itself counts no more.
// @param top the node that is moved with all below it
int Usd_PrimIndexBuilder::_MoveNode(int parent, int node, const Usd_PathMapping& mapping, int top,
                                    const _ArcOptions& options)
{
    if (_graph[node].parent == parent) {
        return node;
    }
    Usd_GraphNode like = _graph[node];
    like.toParent = mapping;
    int moved = _FindChildLike(parent, _graph[parent].arc, like, _graph.GetDepthBelowIntroduction(node));
    const bool isImplied = _graph.IsImplied(node);
    // What is implied from within what is moved is implied again at its new place.
    if (moved < 0 && !(isImplied && _graph.IsBelow(_graph[node].origin, top))) {
        Usd_GraphNode arc = _MakeArc(parent, like.arc, like.path);
        arc.layerStack = like.layerStack;
        arc.origin = node == top || isImplied ? node : parent;
        arc.sibling = like.sibling;
        arc.depth = node == top ? arc.depth : like.depth;
        arc.toParent = mapping;
        _ArcOptions all = options;
        all.contributes = like.CanContribute();
        moved = _AddArc(std::move(arc), all);
    }
    if (moved < 0) {
        _SetInertBelow(node);
        return -1;
    }
    const std::uint32_t restrictedDepth = _graph[moved].restrictedDepth;
    _graph.SetInert(moved, !_graph[node].CanContribute());
    _graph.SetInert(node, true);
    if (restrictedDepth != 0) {
        _graph[node].restrictedDepth = restrictedDepth;
    }
    return moved;
}

PXR_NAMESPACE_CLOSE_SCOPE
