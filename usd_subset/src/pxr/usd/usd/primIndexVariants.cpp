#include "pxr/usd/usd/primIndexBuilder.h"

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/stage.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

// Whether what a node says at a path, its own or one above, counts.
bool Usd_PrimIndexBuilder::_CountsAt(int node, const SdfPath& path) const
{
    const std::uint32_t depth = _graph[node].restrictedDepth;
    return depth == 0 || depth > path.GetPathElementCount();
}

void Usd_PrimIndexBuilder::_FindAncestralVariantSets(int node)
{
    for (SdfPath path = _graph[node].path.GetParentPath(); !path.IsAbsoluteRootPath();
         path = path.GetParentPath()) {
        if (!_CountsAt(node, path)) {
            continue;
        }
        _FindVariantSets(node, path, true);
        if (path.IsPrimVariantSelectionPath()) {
            break; // those above it are chosen already
        }
    }
}

void Usd_PrimIndexBuilder::_FindVariantSets(int node, const SdfPath& path, bool isAncestral)
{
    const std::vector<std::string> sets = Usd_FindVariantSets(*_graph[node].layerStack, path);
    const _TaskType type = isAncestral ? _TaskType::AncestralVariantAuthored : _TaskType::VariantAuthored;
    for (size_t i = 0; i != sets.size(); ++i) {
        _AddTask({type, node, static_cast<int>(i), path, sets[i]});
    }
}

void Usd_PrimIndexBuilder::_FollowVariant(const _Task& task, bool isAncestral)
{
    if (!_CountsAt(task.node, task.setPath)) {
        return;
    }
    const std::string selection = _FindSelection(task);
    if (!selection.empty()) {
        _AddVariantArc(task, selection, isAncestral);
        return;
    }
    _Task later = task;
    if (!_FindFallback(task).empty()) {
        later.type = isAncestral ? _TaskType::AncestralVariantFallback : _TaskType::VariantFallback;
    } else {
        later.type = isAncestral ? _TaskType::AncestralVariantNone : _TaskType::VariantNone;
    }
    _AddTask(std::move(later));
}

void Usd_PrimIndexBuilder::_FollowFallback(const _Task& task, bool isAncestral)
{
    if (_CountsAt(task.node, task.setPath)) {
        _AddVariantArc(task, _FindFallback(task), isAncestral);
    }
}

void Usd_PrimIndexBuilder::_AddVariantArc(const _Task& task, const std::string& selection, bool isAncestral)
{
    const SdfPath& path = _graph[task.node].path;
    const SdfPath variant = task.setPath.AppendVariantSelection(task.setName, selection);
    if (variant.IsEmpty()) {
        return; // no variant can have that name
    }
    Usd_GraphNode arc = _MakeArc(task.node, Usd_ArcType::Variant, path.ReplacePrefix(task.setPath, variant));
    arc.sibling = task.set;
    _ArcOptions options;
    if (isAncestral) {
        arc.depth = Usd_GetNamespaceDepth(task.setPath);
        options.withAncestors = true;
        // Like the class that this came with, it brings in no place a second time.
        for (int node = task.node; node > 0; node = _graph[node].parent) {
            options.skipsDuplicates =
                options.skipsDuplicates ||
                (Usd_IsClassArc(_graph[node].arc) && _graph.GetDepthBelowIntroduction(node) == 0 &&
                 _graph[node].CanContribute());
        }
    }
    if (_AddArc(std::move(arc), options) >= 0) {
        _RetryVariants();
    }
}

// The strongest place where a path of a node could be spoken of: at the root, or as far as it maps.
std::pair<SdfPath, int> Usd_PrimIndexBuilder::_MapToStrongest(int node, const SdfPath& path) const
{
    if (node == 0) {
        return {path, node};
    }
    SdfPath mapped = _graph[node].toStage.MapSourceToTarget(path);
    if (!mapped.IsEmpty()) {
        node = 0;
    } else {
        mapped = path;
        while (node != 0) {
            const SdfPath outer = _graph[node].toParent.MapSourceToTarget(mapped);
            if (outer.IsEmpty()) {
                break;
            }
            mapped = outer;
            node = _graph[node].parent;
        }
    }
    const SdfPath introduced = _graph.GetPathAtIntroduction(node);
    if (introduced.ContainsPrimVariantSelection()) {
        mapped = mapped.ReplacePrefix(introduced.StripAllVariantSelections(), introduced);
    }
    return {mapped, node};
}

std::string Usd_PrimIndexBuilder::_FindSelection(const _Task& task) const
{
    const std::pair<SdfPath, int> start =
        _MapToStrongest(task.node, task.setPath.StripAllVariantSelections());
    std::vector<std::pair<SdfPath, int>> todo{start};
    std::vector<std::pair<SdfPath, int>> order;
    while (!todo.empty()) {
        const std::pair<SdfPath, int> at = todo.back();
        todo.pop_back();
        order.push_back(at);
        const std::vector<int>& children = _graph[at.second].children;
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            const SdfPath inner = _graph[*child].toParent.MapTargetToSource(at.first);
            if (!inner.IsEmpty()) {
                todo.emplace_back(inner, *child);
            }
        }
    }
    // What was chosen once stays.
    for (const auto& at : order) {
        if (_graph[at.second].arc != Usd_ArcType::Variant) {
            continue;
        }
        const SdfPath variant = _graph.GetPathAtIntroduction(at.second);
        if (variant.GetVariantSelection().first == task.setName && variant.GetPrimPath() == at.first) {
            return variant.GetVariantSelection().second;
        }
    }
    for (const auto& at : order) {
        if (!_CountsAt(at.second, at.first)) {
            continue;
        }
        SdfPath site = at.first;
        if (_graph[at.second].arc == Usd_ArcType::Variant) {
            const SdfPath variant = _graph.GetPathAtIntroduction(at.second);
            site = site.ReplacePrefix(variant.StripAllVariantSelections(), variant);
        }
        std::string selection;
        if (Usd_FindVariantSelection(*_graph[at.second].layerStack, site, task.setName, _indexer,
                                     &selection)) {
            return selection;
        }
    }
    return std::string();
}

std::string Usd_PrimIndexBuilder::_FindFallback(const _Task& task) const
{
    const PcpVariantFallbackMap fallbacks = UsdStage::GetGlobalVariantFallbacks();
    const auto wanted = fallbacks.find(task.setName);
    if (wanted == fallbacks.end()) {
        return std::string();
    }
    for (const std::string& name : wanted->second) {
        const SdfPath variant = task.setPath.AppendVariantSelection(task.setName, name);
        if (!variant.IsEmpty() && !Usd_FindSpecs(*_graph[task.node].layerStack, variant).empty()) {
            return name;
        }
    }
    return std::string();
}

PXR_NAMESPACE_CLOSE_SCOPE
