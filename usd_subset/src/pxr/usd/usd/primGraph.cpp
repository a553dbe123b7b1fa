#include "pxr/usd/usd/primGraph.h"

#include <algorithm>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

int Usd_GetNamespaceDepth(const SdfPath& path)
{
    auto depth = static_cast<int>(path.GetPathElementCount());
    for (SdfPath at = path; at.ContainsPrimVariantSelection(); at = at.GetParentPath()) {
        depth -= at.IsPrimVariantSelectionPath() ? 1 : 0;
    }
    return depth;
}

std::vector<const Usd_LayerStack::Entry*> Usd_FindSpecs(const Usd_LayerStack& layerStack, const SdfPath& path)
{
    std::vector<const Usd_LayerStack::Entry*> specs;
    for (const Usd_LayerStack::Entry& entry : layerStack.GetEntries()) {
        if (entry.layer->HasSpec(path)) {
            specs.push_back(&entry);
        }
    }
    return specs;
}

Usd_PrimGraph::Usd_PrimGraph(const Usd_LayerStackPtr& layerStack, const SdfPath& path)
{
    Usd_GraphNode root;
    root.layerStack = layerStack;
    root.path = path;
    root.specs = Usd_FindSpecs(*layerStack, path);
    _nodes.push_back(std::move(root));
}

int Usd_PrimGraph::Add(Usd_GraphNode node)
{
    const int index = GetSize();
    node.toStage = (*this)[node.parent].toStage.Compose(node.toParent);
    node.specs = Usd_FindSpecs(*node.layerStack, node.path);
    _nodes.push_back(std::move(node));
    _InsertAmongSiblings(index);
    return index;
}

int Usd_PrimGraph::AddGraph(const Usd_PrimGraph& graph, const Usd_GraphNode& top)
{
    const int first = GetSize();
    const Usd_PathMapping toStage = (*this)[top.parent].toStage.Compose(top.toParent);
    for (const Usd_GraphNode& node : graph._nodes) {
        Usd_GraphNode added = node;
        if (GetSize() == first) {
            added.arc = top.arc;
            added.parent = top.parent;
            added.origin = top.origin;
            added.sibling = top.sibling;
            added.depth = top.depth;
            added.toParent = top.toParent;
            added.toStage = toStage;
        } else {
            added.parent += first;
            added.origin += first;
            added.toStage = toStage.Compose(added.toStage);
        }
        for (int& child : added.children) {
            child += first;
        }
        _nodes.push_back(std::move(added));
    }
    _InsertAmongSiblings(first);
    return first;
}

void Usd_PrimGraph::_InsertAmongSiblings(int node)
{
    std::vector<int>& siblings = (*this)[(*this)[node].parent].children;
    const auto isStronger = [&](int sibling) { return CompareSiblings(node, sibling) < 0; };
    // A node that is no stronger than the last one comes last, whatever the others are.
    const auto place = siblings.empty() || !isStronger(siblings.back())
                           ? siblings.end()
                           : std::find_if(siblings.begin(), siblings.end(), isStronger);
    siblings.insert(place, node);
}

void Usd_PrimGraph::Load(const Usd_PrimIndex& index)
{
    const SdfPath& base = index.GetNodesPath();
    _nodes.clear();
    for (const Usd_PrimIndexNode& stored : index.GetNodes()) {
        Usd_GraphNode node;
        static_cast<Usd_PrimIndexNode&>(node) = stored;
        if (base != index.GetPath()) {
            node.path = base.IsAbsoluteRootPath()
                            ? index.GetPath()
                            : node.path.AppendPath(index.GetPath().MakeRelativePath(base));
            node.isDueToAncestor = stored.parent >= 0;
        }
        if (node.parent >= 0) {
            (*this)[node.parent].children.push_back(GetSize());
        }
        node.isCulled = stored.isCulled;
        _nodes.push_back(std::move(node));
    }
    for (const Usd_SpecSite& site : index.GetSites()) {
        Usd_GraphNode& node = (*this)[static_cast<int>(site.node)];
        node.specs.push_back(node.layerStack->FindEntry(site.layer));
    }
    for (Usd_GraphNode& node : _nodes) {
        if (node.isInert && !node.isCulled) {
            node.specs = Usd_FindSpecs(*node.layerStack, node.path);
        }
    }
}

void Usd_PrimGraph::AppendChild(const TfToken& name)
{
    for (Usd_GraphNode& node : _nodes) {
        node.path = node.path.AppendChild(name);
        node.isDueToAncestor = node.parent >= 0;
        if (node.HasSpecs()) {
            node.specs = Usd_FindSpecs(*node.layerStack, node.path);
        }
    }
}

int Usd_PrimGraph::GetDepthBelowIntroduction(int node) const
{
    const int parent = (*this)[node].parent;
    return parent < 0 ? 0 : Usd_GetNamespaceDepth((*this)[parent].path) - (*this)[node].depth;
}

SdfPath Usd_PrimGraph::GetPathAtIntroduction(int node) const
{
    SdfPath path = (*this)[node].path;
    for (int depth = GetDepthBelowIntroduction(node); depth > 0; --depth) {
        while (path.IsPrimVariantSelectionPath()) {
            path = path.GetParentPath();
        }
        path = path.GetParentPath();
    }
    return path;
}

bool Usd_PrimGraph::IsBelow(int node, int above) const
{
    while (node >= 0 && node != above) {
        node = (*this)[node].parent;
    }
    return node >= 0;
}

bool Usd_PrimGraph::IsPropagatedSpecialize(int node) const
{
    return (*this)[node].arc == Usd_ArcType::Specialize && (*this)[node].parent == 0 &&
           HasSameSite(node, (*this)[node].origin);
}

bool Usd_PrimGraph::HasClassChild(int node) const
{
    const std::vector<int>& children = (*this)[node].children;
    return std::any_of(children.begin(), children.end(),
                       [this](int child) { return Usd_IsClassArc((*this)[child].arc); });
}

bool Usd_PrimGraph::HasSpecializeChild(int node) const
{
    const std::vector<int>& children = (*this)[node].children;
    return std::any_of(children.begin(), children.end(),
                       [this](int child) { return (*this)[child].arc == Usd_ArcType::Specialize; });
}

std::pair<int, int> Usd_PrimGraph::FindClassHierarchy(int node) const
{
    const int depth = GetDepthBelowIntroduction(node);
    int classNode = -1;
    while (Usd_IsClassArc((*this)[node].arc) && GetDepthBelowIntroduction(node) == depth) {
        classNode = node;
        node = (*this)[node].parent;
    }
    return {node, classNode};
}

int Usd_PrimGraph::FindContributor(const Usd_LayerStackPtr& layerStack, const SdfPath& path) const
{
    const auto found = std::find_if(_nodes.begin(), _nodes.end(), [&](const Usd_GraphNode& node) {
        return node.CanContribute() && node.layerStack == layerStack && node.path == path;
    });
    return found == _nodes.end() ? -1 : static_cast<int>(found - _nodes.begin());
}

void Usd_PrimGraph::_RecordRestriction(int node, bool isRestricted)
{
    Usd_GraphNode& at = (*this)[node];
    at.restrictedDepth =
        isRestricted || !at.CanContribute() ? static_cast<std::uint32_t>(at.path.GetPathElementCount()) : 0;
}

void Usd_PrimGraph::SetInert(int node, bool isInert)
{
    const bool wasInert = !(*this)[node].CanContribute();
    (*this)[node].isInert = isInert;
    if (isInert != wasInert) {
        _RecordRestriction(node, isInert);
    }
}

void Usd_PrimGraph::SetCulled(int node)
{
    if (!(*this)[node].isCulled) {
        (*this)[node].isCulled = true;
        _RecordRestriction(node, true);
    }
}

bool Usd_PrimGraph::_CanBeCulled(int node, const Usd_LayerStackPtr& rootStack) const
{
    const Usd_GraphNode& at = (*this)[node];
    if (at.isCulled || at.parent < 0) {
        return at.isCulled;
    }
    if (GetDepthBelowIntroduction(node) == 0) {
        return false;
    }
    if (at.arc == Usd_ArcType::Inherit && at.layerStack == rootStack) {
        const int origin = _FindOriginRoot(node).first;
        if (!GetPathAtIntroduction(origin).IsRootPrimPath()) {
            return false;
        }
    }
    const bool hasLiveChild = std::any_of(at.children.begin(), at.children.end(),
                                          [this](int child) { return !(*this)[child].isCulled; });
    return !hasLiveChild && !(at.HasSpecs() && at.CanContribute());
}

void Usd_PrimGraph::_CullBelow(int node, const Usd_LayerStackPtr& rootStack, std::vector<int>* culled)
{
    const std::vector<int> order = [this, node] {
        std::vector<int> nodes{node};
        for (size_t i = 0; i != nodes.size(); ++i) {
            for (const int child : (*this)[nodes[i]].children) {
                if ((*this)[child].arc != Usd_ArcType::Specialize) { // stands elsewhere, too
                    nodes.push_back(child);
                }
            }
        }
        return nodes;
    }();
    for (auto each = order.rbegin(); each != order.rend(); ++each) {
        if (_CanBeCulled(*each, rootStack)) {
            SetCulled(*each);
            culled->push_back(*each);
        }
    }
}

// Culls the nodes below one whose sites others were culled at.
bool Usd_PrimGraph::_CullSites(int node, const std::vector<int>& sites)
{
    bool areChildrenCulled = true;
    for (const int child : (*this)[node].children) {
        areChildrenCulled = _CullSites(child, sites) && areChildrenCulled;
    }
    if (areChildrenCulled &&
        std::any_of(sites.begin(), sites.end(), [this, node](int site) { return HasSameSite(site, node); })) {
        SetCulled(node);
    }
    return (*this)[node].isCulled;
}

void Usd_PrimGraph::Cull(const Usd_LayerStackPtr& rootStack)
{
    // What specializes stands twice in the graph. The weaker places decide, the weakest first.
    const std::vector<int> children = (*this)[0].children;
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        if (IsPropagatedSpecialize(*child)) {
            std::vector<int> culled;
            _CullBelow(*child, rootStack, &culled);
            if (!culled.empty()) {
                _CullSites((*this)[*child].origin, culled);
            }
        }
    }
    for (const int child : children) {
        if (!IsPropagatedSpecialize(child)) {
            std::vector<int> culled;
            _CullBelow(child, rootStack, &culled);
        }
    }
}

std::vector<char> Usd_PrimGraph::_FindNeeded() const
{
    std::vector<char> isNeeded(_nodes.size(), 0);
    std::vector<int> todo;
    for (int i = 0; i != GetSize(); ++i) {
        if (!(*this)[i].isCulled) {
            todo.push_back(i);
        }
    }
    while (!todo.empty()) {
        const int node = todo.back();
        todo.pop_back();
        if (node >= 0 && !isNeeded[static_cast<size_t>(node)]) {
            isNeeded[static_cast<size_t>(node)] = 1;
            todo.push_back((*this)[node].parent);
            todo.push_back((*this)[node].origin);
        }
    }
    return isNeeded;
}

void Usd_PrimGraph::RemoveCulled()
{
    const std::vector<char> isNeeded = _FindNeeded();
    std::vector<int> places(_nodes.size(), -1);
    std::vector<int> kept;
    for (const int i : GetStrengthOrder()) {
        if (isNeeded[static_cast<size_t>(i)]) {
            places[static_cast<size_t>(i)] = static_cast<int>(kept.size());
            kept.push_back(i);
        }
    }
    std::vector<Usd_GraphNode> nodes;
    nodes.reserve(kept.size());
    for (const int i : kept) {
        nodes.push_back(std::move((*this)[i]));
        Usd_GraphNode& node = nodes.back();
        node.parent = i == 0 ? -1 : places[static_cast<size_t>(node.parent)];
        node.origin = i == 0 ? -1 : places[static_cast<size_t>(node.origin)];
        node.children.clear();
        if (i != 0) {
            nodes[static_cast<size_t>(node.parent)].children.push_back(static_cast<int>(nodes.size()) - 1);
        }
    }
    _nodes = std::move(nodes);
}

PXR_NAMESPACE_CLOSE_SCOPE
