#include "pxr/usd/usd/primGraph.h"

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

int Usd_PrimGraph::Add(Usd_GraphNode node)
{
    const int index = GetSize();
    node.plainPath = node.path.StripAllVariantSelections();
    if (node.node.parent >= 0) {
        const Usd_GraphNode& parent = (*this)[node.node.parent];
        node.node.toStage = parent.node.toStage.Compose(node.node.toParent);
        (*this)[node.node.parent].children.push_back(index);
    }
    _nodes.push_back(std::move(node));
    return index;
}

bool Usd_PrimGraph::HasSite(const Usd_LayerStackPtr& layerStack, const SdfPath& path) const
{
    return std::any_of(_nodes.begin(), _nodes.end(), [&](const Usd_GraphNode& other) {
        return other.node.layerStack == layerStack && other.path == path;
    });
}

bool Usd_PrimGraph::MakesCycle(int node, const Usd_LayerStackPtr& layerStack, const SdfPath& path) const
{
    for (int i = node; i >= 0; i = (*this)[i].node.parent) {
        const SdfPath& above = (*this)[i].plainPath;
        if ((*this)[i].node.layerStack == layerStack && (above.HasPrefix(path) || path.HasPrefix(above))) {
            return true;
        }
    }
    return false;
}

int Usd_PrimGraph::GetArcDepth(int node) const
{
    int depth = 0;
    for (int i = (*this)[node].node.parent; i >= 0; i = (*this)[i].node.parent) {
        ++depth;
    }
    return depth;
}

bool Usd_PrimGraph::_IsStronger(int a, int b) const
{
    const Usd_GraphNode& first = (*this)[a];
    const Usd_GraphNode& second = (*this)[b];
    if (first.node.arc != second.node.arc) {
        return first.node.arc < second.node.arc;
    }
    // An arc that was written on the prim itself is stronger than one of a prim above it.
    return first.node.depth > second.node.depth;
}

void Usd_PrimGraph::_Visit(int node, std::vector<int>* order, std::vector<int>* specialized) const
{
    order->push_back(node);
    std::vector<int> children = (*this)[node].children;
    std::stable_sort(children.begin(), children.end(), [this](int a, int b) { return _IsStronger(a, b); });
    // What a class specializes where it is referenced is stronger than what it does in its own layers.
    for (const int child : children) {
        if ((*this)[child].node.arc == Usd_ArcType::Specialize) {
            specialized->push_back(child);
        }
    }
    for (const int child : children) {
        if ((*this)[child].node.arc != Usd_ArcType::Specialize) {
            _Visit(child, order, specialized);
        }
    }
}

std::vector<int> Usd_PrimGraph::GetStrengthOrder() const
{
    std::vector<int> order;
    std::vector<int> specialized;
    if (!_nodes.empty()) {
        _Visit(0, &order, &specialized);
    }
    for (size_t i = 0; i < specialized.size(); ++i) {
        _Visit(specialized[i], &order, &specialized);
    }
    return order;
}

PXR_NAMESPACE_CLOSE_SCOPE
