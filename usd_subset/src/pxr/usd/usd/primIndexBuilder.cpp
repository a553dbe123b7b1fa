#include "pxr/usd/usd/primIndexBuilder.h"

#include "pxr/usd/usd/primIndexer.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/usd/tokens.h>

#include <algorithm>
#include <tuple>

PXR_NAMESPACE_OPEN_SCOPE

Usd_PrimIndexBuilder::Usd_PrimIndexBuilder(Usd_PrimIndexer& indexer, const SdfPath& path)
    : _indexer(indexer), _frame(nullptr), _path(path)
{}

Usd_PrimIndexBuilder::Usd_PrimIndexBuilder(const _Frame& frame)
    : _indexer(frame.outer._indexer), _frame(&frame), _path(frame.outer._path)
{}

Usd_PrimIndexPtr Usd_PrimIndexBuilder::Build(const Usd_PrimIndex& parent)
{
    _graph.Load(parent);
    if (parent.GetPath() != parent.GetNodesPath()) {
        _graph.Cull(_graph[0].layerStack);
        _graph.RemoveCulled();
    }
    _loaded = _graph.GetSize();
    _BuildChild(parent.IsInstanceable(), _path.GetNameToken(), true);
    return _Finish();
}

void Usd_PrimIndexBuilder::_BuildTo(const Usd_LayerStackPtr& layerStack, const SdfPath& path,
                                    bool rootContributes)
{
    // What is above a variant is composed where the variant is selected.
    std::vector<TfToken> names;
    SdfPath top = path;
    while (!top.IsAbsoluteRootPath() && !top.IsPrimVariantSelectionPath()) {
        names.push_back(top.GetNameToken());
        top = top.GetParentPath();
    }
    _graph = Usd_PrimGraph(layerStack, top);
    if (!top.IsAbsoluteRootPath()) {
        _graph.SetInert(0, names.empty() && !rootContributes);
        _AddTasksBelow(0, _ArcOptions(), false);
        _WorkOff();
    }
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        _BuildChild(_IsInstanceable(), *name, std::next(name) != names.rend() || rootContributes);
    }
}

void Usd_PrimIndexBuilder::_BuildChild(bool parentIsInstanceable, const TfToken& name, bool rootContributes)
{
    if (parentIsInstanceable) {
        _MarkUnshared();
    }
    _graph.AppendChild(name);
    _hasPayloads = false;
    if (!rootContributes) {
        _graph.SetInert(0, true);
    }
    if (!_LeaveOutIfProhibited()) {
        _AddTasksBelow(0, _ArcOptions(), false);
        _WorkOff();
    }
}

// A prim that was moved away leaves nothing behind: its place stays empty, wherever arcs lead to it from.
bool Usd_PrimIndexBuilder::_LeaveOutIfProhibited()
{
    for (const int node : _graph.GetStrengthOrder()) {
        const Usd_GraphNode& at = _graph[node];
        if (!at.CanContribute() || !at.layerStack->GetRelocates().IsSource(at.path)) {
            continue;
        }
        if (_frame) {
            _Warn(node, TfStringPrintf("The arc to <%s> was left out: the prim is moved elsewhere by the "
                                       "relocates of the layers.",
                                       _frame->arc.path.GetText()));
        }
        _graph.SetInert(0, true);
        const std::vector<int> children = _graph[0].children;
        for (const int child : children) {
            _LeaveOut(child);
        }
        return true;
    }
    return false;
}

bool Usd_PrimIndexBuilder::_IsLess(const _Task& a, const _Task& b) const
{
    if (a.type != b.type) {
        return a.type > b.type;
    }
    switch (a.type) {
    case _TaskType::AncestralVariantAuthored:
    case _TaskType::AncestralVariantFallback:
    case _TaskType::VariantAuthored:
    case _TaskType::VariantFallback:
        if (a.node != b.node) {
            return _graph.CompareStrength(a.node, b.node) > 0;
        }
        return std::tie(a.setPath, a.set) > std::tie(b.setPath, b.set);
    case _TaskType::ImpliedClasses:
        return b.node > a.node; // those of nodes below first
    default:
        return std::tie(a.node, a.setPath, a.set) > std::tie(b.node, b.setPath, b.set);
    }
}

void Usd_PrimIndexBuilder::_AddTask(_Task task)
{
    const bool isOnce = task.type == _TaskType::ImpliedClasses || task.type == _TaskType::ImpliedSpecializes;
    if (isOnce && !_waiting.emplace(task.type, task.node).second) {
        return;
    }
    _tasks.push_back(std::move(task));
    std::push_heap(_tasks.begin(), _tasks.end(),
                   [this](const _Task& a, const _Task& b) { return _IsLess(a, b); });
}

// Something was found that may select variants.
void Usd_PrimIndexBuilder::_RetryVariants()
{
    for (_Task& task : _tasks) {
        if (task.type == _TaskType::VariantFallback || task.type == _TaskType::VariantNone) {
            task.type = _TaskType::VariantAuthored;
        } else if (task.type == _TaskType::AncestralVariantFallback ||
                   task.type == _TaskType::AncestralVariantNone) {
            task.type = _TaskType::AncestralVariantAuthored;
        }
    }
    std::make_heap(_tasks.begin(), _tasks.end(),
                   [this](const _Task& a, const _Task& b) { return _IsLess(a, b); });
}

void Usd_PrimIndexBuilder::_WorkOff()
{
    while (!_tasks.empty()) {
        std::pop_heap(_tasks.begin(), _tasks.end(),
                      [this](const _Task& a, const _Task& b) { return _IsLess(a, b); });
        const _Task task = std::move(_tasks.back());
        _tasks.pop_back();
        _waiting.erase({task.type, task.node});
        _Do(task);
    }
}

void Usd_PrimIndexBuilder::_Do(const _Task& task)
{
    const bool counts = _graph[task.node].CanContribute();
    switch (task.type) {
    case _TaskType::Relocations:
        return counts ? _FollowRelocation(task.node) : void();
    case _TaskType::ImpliedRelocations:
        return _FollowImpliedRelocation(task.node);
    case _TaskType::References:
        return counts ? _FollowAssetArcs(task.node, Usd_FindReferences(_graph[task.node], _indexer),
                                         Usd_ArcType::Reference)
                      : void();
    case _TaskType::Payloads:
        return counts ? _FollowPayloads(task.node) : void();
    case _TaskType::Inherits:
        return counts ? _FollowClassArcs(task.node, Usd_FindInherits(_graph[task.node]), Usd_ArcType::Inherit)
                      : void();
    case _TaskType::Specializes:
        return counts ? _FollowClassArcs(task.node, Usd_FindSpecializes(_graph[task.node]),
                                         Usd_ArcType::Specialize)
                      : void();
    case _TaskType::ImpliedClasses:
        return _ImplyClasses(task.node);
    case _TaskType::ImpliedSpecializes:
        return _ImplySpecializes(task.node);
    case _TaskType::AncestralVariantSets:
        return _FindAncestralVariantSets(task.node);
    case _TaskType::VariantSets:
        return counts ? _FindVariantSets(task.node, _graph[task.node].path, false) : void();
    case _TaskType::AncestralVariantAuthored:
        return _FollowVariant(task, true);
    case _TaskType::VariantAuthored:
        return _FollowVariant(task, false);
    case _TaskType::AncestralVariantFallback:
        return _FollowFallback(task, true);
    case _TaskType::VariantFallback:
        return _FollowFallback(task, false);
    case _TaskType::AncestralVariantNone:
    case _TaskType::VariantNone:
        return;
    case _TaskType::UnresolvedPath:
        return _CheckTarget(task.node);
    }
}

// Tasks for what is written at a node and all below it.
// @param isNew whether the nodes came with an arc, and may hold variants above it that nobody chose yet
void Usd_PrimIndexBuilder::_AddTasksBelow(int node, const _ArcOptions& options, bool isNew)
{
    const std::vector<int> children = _graph[node].children;
    for (const int child : children) {
        _AddTasksBelow(child, options, isNew);
    }
    const Usd_GraphNode& at = _graph[node];
    const bool isAssetArc = at.arc == Usd_ArcType::Reference || at.arc == Usd_ArcType::Payload;
    if (isNew && !_frame && isAssetArc) {
        _AddTask({_TaskType::UnresolvedPath, node});
    }
    const Usd_WrittenArcs written = Usd_FindWrittenArcs(at);
    if (!_frame && written.variants) {
        _AddTask({_TaskType::VariantSets, node});
    }
    if (options.skipsSpecializes) {
        return;
    }
    if (isNew && !_frame && options.withAncestors && Usd_HasVariantsAbove(at)) {
        _AddTask({_TaskType::AncestralVariantSets, node});
    }
    if (!options.skipsWrittenArcs) {
        const std::pair<bool, _TaskType> tasks[] = {{written.specializes, _TaskType::Specializes},
                                                    {written.inherits, _TaskType::Inherits},
                                                    {written.payloads, _TaskType::Payloads},
                                                    {written.references, _TaskType::References},
                                                    {written.relocates, _TaskType::Relocations}};
        for (const auto& task : tasks) {
            if (task.first) {
                _AddTask({task.second, node});
            }
        }
    }
    if (_graph[node].arc == Usd_ArcType::Relocate) {
        _AddTask({_TaskType::ImpliedRelocations, node});
    }
}

void Usd_PrimIndexBuilder::_AddTasksForNew(int node, const _ArcOptions& options)
{
    if (!options.skipsSpecializes) {
        if (Usd_IsClassArc(_graph[node].arc)) {
            _AddTask({_TaskType::ImpliedClasses, _FindImpliedClassStart(node)});
        } else if (_graph.HasClassChild(node)) {
            _AddTask({_TaskType::ImpliedClasses, node});
        }
        // Builders for arcs leave this to the outermost one, which has the root that weaker nodes go to.
        const int start = _frame ? -1 : _FindSpecializeStart(node);
        if (start >= 0) {
            _AddTask({_TaskType::ImpliedSpecializes, start});
        } else if (!_frame && _graph.HasSpecializeChild(node)) {
            _AddTask({_TaskType::ImpliedSpecializes, node});
        }
    }
    _AddTasksBelow(node, options, true);
}

bool Usd_PrimIndexBuilder::_IsShared(int node) const
{
    if (_graph[node].isCulled || !_graph[node].HasSpecs()) {
        return false;
    }
    for (; node > 0; node = _graph[node].parent) {
        if (!_graph[node].isDueToAncestor) {
            return true;
        }
    }
    return false;
}

// What instances do not share says nothing of what is below them.
void Usd_PrimIndexBuilder::_MarkUnshared()
{
    std::vector<int> todo{0};
    while (!todo.empty()) {
        const int node = todo.back();
        todo.pop_back();
        if (!_graph[node].isCulled && !_IsShared(node)) {
            _graph.SetInert(node, true);
            todo.insert(todo.end(), _graph[node].children.begin(), _graph[node].children.end());
        }
    }
}

bool Usd_PrimIndexBuilder::_IsInstanceable() const
{
    const std::vector<int> order = _graph.GetStrengthOrder();
    if (std::none_of(order.begin(), order.end(), [this](int node) { return _IsShared(node); })) {
        return false;
    }
    for (const int node : order) {
        if (!_graph[node].CanContribute()) {
            continue;
        }
        for (const Usd_LayerStack::Entry* const entry : _graph[node].specs) {
            bool instanceable = false;
            if (entry->layer->HasField(_graph[node].path, SdfFieldKeys->Instanceable, &instanceable)) {
                return instanceable;
            }
        }
    }
    return false;
}

Usd_PrimIndexPtr Usd_PrimIndexBuilder::_Finish()
{
    for (int i = _loaded; i < _graph.GetSize(); ++i) {
        _indexer.AddDependency(_path, _graph[i].layerStack, _graph[i].path.StripAllVariantSelections());
    }
    _graph.Cull(_graph[0].layerStack);
    auto index = std::make_shared<Usd_PrimIndex>();
    index->_path = _path;
    index->_hasPayloads = _hasPayloads;
    index->_isInstanceable = _IsInstanceable();
    _graph.RemoveCulled();
    const std::shared_ptr<Usd_PrimIndex::Graph> kept = _indexer.MakeGraph();
    kept->path = _path;
    kept->nodes.reserve(static_cast<size_t>(_graph.GetSize()));
    for (int i = 0; i != _graph.GetSize(); ++i) {
        const Usd_GraphNode& node = _graph[i];
        kept->nodes.push_back(node);
        kept->hasRelocates = kept->hasRelocates || !node.layerStack->GetRelocates().IsEmpty();
        if (!node.CanContribute()) {
            continue;
        }
        const SdfLayerOffset& offset = node.toStage.GetTimeOffset();
        for (const Usd_LayerStack::Entry* const entry : node.specs) {
            index->_sites.push_back({get_pointer(entry->layer), node.path, offset * entry->offset,
                                     static_cast<std::uint32_t>(i)});
            index->_hasClips = index->_hasClips || entry->layer->HasField(node.path, UsdTokens->clips);
        }
    }
    _indexer.Count(*kept);
    index->_graph = kept;
    return index;
}

void Usd_PrimIndexBuilder::_Warn(int node, const std::string& text) const
{
    const Usd_GraphNode& at = _graph[node];
    const SdfLayerRefPtr layer = at.specs.empty() ? at.layerStack->GetRootLayer() : at.specs.front()->layer;
    _indexer.Warn(TfStringPrintf("%s It is written on <%s> in @%s@.", text.c_str(), at.path.GetText(),
                                 layer->GetIdentifier().c_str()));
}

PXR_NAMESPACE_CLOSE_SCOPE
