#include "pxr/usd/usd/primGraph.h"

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

// Which of two nodes comes first from a node on; zero when neither does.
int Usd_PrimGraph::_CompareInOrder(int node, int a, int b) const
{
    if (node == a || node == b) {
        return node == a ? -1 : 1;
    }
    for (const int child : (*this)[node].children) {
        if (const int result = _CompareInOrder(child, a, b)) {
            return result;
        }
    }
    return 0;
}

// The node whose arc is written in scene description and which a node stands for, and how many nodes away.
std::pair<int, int> Usd_PrimGraph::_FindOriginRoot(int node) const
{
    int distance = 0;
    for (; (*this)[node].origin != (*this)[node].parent; node = (*this)[node].origin) {
        ++distance;
    }
    return {node, distance};
}

int Usd_PrimGraph::_GetHierarchyDepth(int node) const
{
    int instance = FindClassHierarchy(node).first;
    while ((*this)[instance].arc == Usd_ArcType::Relocate) {
        instance = (*this)[instance].parent;
    }
    return (*this)[instance].depth;
}

int Usd_PrimGraph::_CompareSpecializesOfOneOrigin(int a, int b) const
{
    const int originA = (*this)[a].origin;
    const int originB = (*this)[b].origin;
    const bool isAuthoredA = originA == (*this)[a].parent;
    const bool isAuthoredB = originB == (*this)[b].parent;
    const int depthA = isAuthoredA ? 0 : _GetHierarchyDepth(originA);
    const int depthB = isAuthoredB ? 0 : _GetHierarchyDepth(originB);
    if (depthA != depthB) {
        return depthA < depthB ? -1 : 1;
    }
    // What was implied over more arcs is nearer to the stage.
    const int distanceA = _FindOriginRoot(a).second;
    const int distanceB = _FindOriginRoot(b).second;
    if (distanceA != distanceB) {
        return distanceA > distanceB ? -1 : 1;
    }
    const Usd_LayerStackPtr& rootStack = (*this)[0].layerStack;
    if ((*this)[a].layerStack == rootStack && (*this)[b].layerStack == rootStack && !isAuthoredA &&
        !isAuthoredB) {
        const bool isImpliedA = !HasSameSite(a, originA);
        const bool isImpliedB = !HasSameSite(b, originB);
        if (isImpliedA != isImpliedB) {
            return isImpliedA ? -1 : 1;
        }
    }
    return _CompareInOrder(0, originA, originB);
}

// Nodes that specialize stand at the root for places all over the graph.
int Usd_PrimGraph::_CompareSpecializes(int a, int b) const
{
    const Usd_GraphNode& first = (*this)[a];
    const Usd_GraphNode& second = (*this)[b];
    const int rootA = _FindOriginRoot(a).first;
    const int rootB = _FindOriginRoot(b).first;
    if (first.depth != second.depth && !IsBelow(rootA, rootB) && !IsBelow(rootB, rootA)) {
        return first.depth > second.depth ? -1 : 1;
    }
    if (first.origin == second.origin) {
        if (first.origin == first.parent) {
            return 0;
        }
        // One is implied by the other's origin in a stronger layer stack.
        const bool isImpliedA = !HasSameSite(a, first.origin);
        const bool isImpliedB = !HasSameSite(b, second.origin);
        return isImpliedA == isImpliedB ? 0 : isImpliedA ? -1 : 1;
    }
    return rootA != rootB ? _CompareInOrder(0, rootA, rootB) : _CompareSpecializesOfOneOrigin(a, b);
}

int Usd_PrimGraph::CompareSiblings(int a, int b) const
{
    const Usd_GraphNode& first = (*this)[a];
    const Usd_GraphNode& second = (*this)[b];
    if (a == b) {
        return 0;
    }
    if (first.arc != second.arc) {
        return first.arc < second.arc ? -1 : 1;
    }
    if (first.arc == Usd_ArcType::Specialize) {
        const int result = _CompareSpecializes(a, b);
        if (result != 0 || first.origin != second.origin || first.origin != first.parent) {
            return result;
        }
    } else {
        // An arc that was written further down in namespace is stronger.
        if (first.depth != second.depth) {
            return first.depth > second.depth ? -1 : 1;
        }
        if (first.origin != second.origin) {
            return _CompareInOrder(0, first.origin, second.origin);
        }
    }
    return first.sibling == second.sibling ? 0 : first.sibling < second.sibling ? -1 : 1;
}

int Usd_PrimGraph::CompareStrength(int a, int b) const
{
    if (a == b) {
        return 0;
    }
    const auto wayFromRoot = [this](int node) {
        std::vector<int> way;
        for (; node >= 0; node = (*this)[node].parent) {
            way.push_back(node);
        }
        std::reverse(way.begin(), way.end());
        return way;
    };
    const std::vector<int> wayA = wayFromRoot(a);
    const std::vector<int> wayB = wayFromRoot(b);
    const auto parted = std::mismatch(wayA.begin(), wayA.end(), wayB.begin(), wayB.end());
    if (parted.first == wayA.end()) {
        return -1;
    }
    return parted.second == wayB.end() ? 1 : CompareSiblings(*parted.first, *parted.second);
}

std::vector<int> Usd_PrimGraph::GetStrengthOrder() const
{
    std::vector<int> order;
    std::vector<int> todo;
    if (!_nodes.empty()) {
        todo.push_back(0);
    }
    while (!todo.empty()) {
        const int node = todo.back();
        todo.pop_back();
        order.push_back(node);
        todo.insert(todo.end(), (*this)[node].children.rbegin(), (*this)[node].children.rend());
    }
    return order;
}

PXR_NAMESPACE_CLOSE_SCOPE
