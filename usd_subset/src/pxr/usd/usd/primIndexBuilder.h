#pragma once

#include "pxr/usd/usd/primGraph.h"
#include "pxr/usd/usd/siteArcs.h"

#include <pxr/pxr.h>

#include <set>
#include <string>
#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndexer;

/// Follows the composition arcs of one prim: from its parent's index, and what is written at the prim's
/// sites, to its own index. Arcs that lead nowhere or back to where they came from are left out with one
/// warning each.
///
/// What is found is worked off in the order of tasks, because some arcs decide on others: variants are chosen
/// when everything that may select them is there. An arc that leads below a root prim is followed by a
/// builder of its own, which composes what is above its target; its graph becomes a part of this one.
class Usd_PrimIndexBuilder
{
public:
    Usd_PrimIndexBuilder(Usd_PrimIndexer& indexer, const SdfPath& path);

    /// @param parent the finished index of the prim's parent
    Usd_PrimIndexPtr Build(const Usd_PrimIndex& parent);

private:
    /// In the order in which tasks are done.
    enum class _TaskType
    {
        Relocations,
        ImpliedRelocations,
        References,
        Payloads,
        Inherits,
        ImpliedClasses,
        Specializes,
        AncestralVariantSets,
        AncestralVariantAuthored,
        AncestralVariantFallback,
        AncestralVariantNone,
        ImpliedSpecializes,
        VariantSets,
        VariantAuthored,
        VariantFallback,
        VariantNone, // waits for opinions that may select one
        UnresolvedPath
    };
    struct _Task
    {
        _TaskType type;
        int node;
        int set = 0; // of those of a site
        SdfPath setPath = SdfPath();
        std::string setName = std::string();
    };
    /// An arc that a builder was made for, and the graph that its own becomes a part of.
    struct _Frame
    {
        Usd_PrimIndexBuilder& outer;
        const Usd_GraphNode& arc; // layer stack and path are where it leads
        bool skipsDuplicates;
    };
    /// How an arc is added.
    struct _ArcOptions
    {
        bool contributes = true;       // whether what is written at the site itself counts
        bool withAncestors = false;    // whether what is composed above the site counts
        bool skipsDuplicates = false;  // whether sites that are there already are left out
        bool skipsSpecializes = false; // whether what is specialized is where it should be
        bool skipsWrittenArcs = false; // whether arcs at the site are followed already
    };

    explicit Usd_PrimIndexBuilder(const _Frame& frame);

    // Composition of one level after the other.
    void _BuildTo(const Usd_LayerStackPtr& layerStack, const SdfPath& path, bool rootContributes);
    void _BuildChild(bool parentIsInstanceable, const TfToken& name, bool rootContributes);
    bool _LeaveOutIfProhibited();
    Usd_PrimIndexPtr _Finish();
    bool _IsInstanceable() const;
    void _MarkUnshared();
    bool _IsShared(int node) const;

    // Tasks.
    void _AddTask(_Task task);
    void _AddTasksBelow(int node, const _ArcOptions& options, bool isNew);
    void _AddTasksForNew(int node, const _ArcOptions& options);
    void _RetryVariants();
    void _WorkOff();
    void _Do(const _Task& task);
    bool _IsLess(const _Task& a, const _Task& b) const;

    // Arcs.
    int _AddArc(Usd_GraphNode arc, _ArcOptions options);
    bool _MakesCycle(const Usd_GraphNode& arc) const;
    bool _IsDuplicate(const Usd_GraphNode& arc) const;
    bool _IsTooMuch(int parent);
    int _GetArcDepth(int node) const;
    Usd_GraphNode _MakeArc(int parent, Usd_ArcType type, const SdfPath& path) const;
    Usd_PathMapping _MakeMapping(const SdfPath& source, int target, const SdfLayerOffset& offset) const;
    Usd_ArcType _GetFinalArc(int node) const;

    // References and payloads.
    void _FollowAssetArcs(int node, const std::vector<Usd_AssetArc>& arcs, Usd_ArcType type);
    void _FollowAssetArc(int node, const Usd_AssetArc& arc, Usd_ArcType type, int sibling);
    void _FollowPayloads(int node);
    bool _IsPayloadIncluded(int node) const;
    SdfPath _FindTargetPath(int node, const Usd_AssetArc& arc, const SdfLayer& root) const;
    void _CheckTarget(int node);
    bool _HasSpecsBelow(int node) const;

    // Relocates.
    void _FollowRelocation(int node);
    void _FollowImpliedRelocation(int node);
    void _LeaveOut(int node);
    void _LeaveOutRelocated(int node);

    // Inherits and specializes.
    void _FollowClassArcs(int node, const std::vector<SdfPath>& paths, Usd_ArcType type);
    int _AddClassArc(int parent, int origin, Usd_ArcType type, const Usd_PathMapping& mapping, int sibling,
                     int ignored);
    int _FindChildLike(int parent, Usd_ArcType parentArc, const Usd_GraphNode& like, int depth) const;
    int _FindImpliedClassStart(int node) const;
    void _ImplyClasses(int node);
    void _ImplyClassTree(int target, int source, const Usd_PathMapping& transfer, bool isStart);
    void _ImplyClass(int target, int source, const Usd_PathMapping& transfer);
    void _ImplySpecializes(int node);
    int _FindSpecializeStart(int node) const;
    void _FindSpecializesForRoot(int node);
    int _MoveNode(int parent, int node, const Usd_PathMapping& mapping, int top, const _ArcOptions& options);
    void _MoveToRoot(int parent, int node, const Usd_PathMapping& mapping, int top);
    void _MoveToOrigin(int parent, int node, int top);
    void _SetInertBelow(int node);

    // Variants.
    void _FindAncestralVariantSets(int node);
    void _FindVariantSets(int node, const SdfPath& path, bool isAncestral);
    void _FollowVariant(const _Task& task, bool isAncestral);
    void _FollowFallback(const _Task& task, bool isAncestral);
    void _AddVariantArc(const _Task& task, const std::string& selection, bool isAncestral);
    bool _CountsAt(int node, const SdfPath& path) const;
    std::string _FindSelection(const _Task& task) const;
    std::string _FindFallback(const _Task& task) const;
    std::pair<SdfPath, int> _MapToStrongest(int node, const SdfPath& path) const;

    void _Warn(int node, const std::string& text) const;

    Usd_PrimIndexer& _indexer;
    const _Frame* _frame; // null for the prim itself
    SdfPath _path;        // of the prim
    Usd_PrimGraph _graph;
    std::vector<_Task> _tasks;                    // a heap, the next one in front
    std::set<std::pair<_TaskType, int>> _waiting; // tasks that are added once only
    bool _hasPayloads = false;
    int _loaded = 0; // nodes that came from the parent's index
    int _added = 0;  // nodes, those of builders for arcs included; of the outermost builder
};

PXR_NAMESPACE_CLOSE_SCOPE
