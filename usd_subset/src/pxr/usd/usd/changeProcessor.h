#pragma once

#include <pxr/pxr.h>
#include <pxr/usd/sdf/changeList.h>
#include <pxr/usd/sdf/path.h>

#include <map>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_PrimIndex;
class Usd_StageImpl;

/// Brings a stage up to date after its layers changed, and tells its listeners. Changes that need more than a
/// new value compose prims anew ("resync").
class Usd_ChangeProcessor
{
public:
    explicit Usd_ChangeProcessor(Usd_StageImpl& stage) : _stage(stage) {}

    void Process(const SdfLayerChangeListVec& changes);
    /// Composes the whole stage after another set of layers takes part.
    void ProcessLayerStackChange();
    /// Tells the listeners that any value may be another one.
    void SendResyncOfAll();
    /// Composes prims anew after load rules changed.
    void ProcessPathChanges(const SdfPathVector& paths);

private:
    using _PathsToChanges = std::map<SdfPath, std::vector<const SdfChangeList::Entry*>>;
    using _Entry = SdfChangeList::Entry;

    void _ProcessEntry(const SdfLayerHandle& layer, const SdfPath& path, const _Entry& entry);
    void _ProcessRootEntry(const SdfLayerHandle& layer, const _Entry& entry);
    void _ProcessPrimEntry(const SdfLayerHandle& layer, const SdfPath& path, const _Entry& entry);
    void _ProcessPrimSpecs(const SdfLayerHandle& layer, const SdfPath& path, const _Entry& entry);
    static bool _ChangesOffsets(const _Entry& entry);
    bool _ChangesRate(const _Entry& entry) const;
    static bool _NeedsOtherIndex(const _Entry& entry);
    static bool _HasSpecs(const Usd_PrimIndex& index);

    /// The paths of the stage that a path of a layer contributes to.
    /// @param withBelow whether also prims that take opinions from somewhere below the path
    SdfPathVector _GetAffectedPaths(const SdfLayerHandle& layer, const SdfPath& path, bool withBelow) const;
    void _Add(const SdfLayerHandle& layer, const SdfPath& path, const _Entry* entry,
              _PathsToChanges* changes) const;
    static void _RemoveDescendants(_PathsToChanges* changes);
    /// Moves entries of the same path from weaker to stronger and removes those below.
    static void _MergeAndRemoveDescendants(_PathsToChanges* stronger, _PathsToChanges* weaker);

    void _Recompose();
    void _Send();

    Usd_StageImpl& _stage;
    _PathsToChanges _resyncs;
    _PathsToChanges _typeChanges;
    _PathsToChanges _propertyResyncs;
    _PathsToChanges _infoChanges;
    SdfPathVector _specChanges; // prims that stay, with more or fewer specs
    bool _layerStackChanged = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
