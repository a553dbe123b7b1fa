#pragma once

#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/pathMapping.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// The prims that the layers of a layer stack move in namespace, and where to. A prim whose target is empty
/// is removed.
class Usd_Relocates
{
public:
    using Map = std::map<SdfPath, SdfPath>;
    using Warn = std::function<void(const std::string&)>;

    Usd_Relocates() = default;
    /// @param layers strongest first; what a stronger one says of a prim counts
    /// @param warn gets one sentence for each relocate that is left out
    Usd_Relocates(const std::vector<const SdfLayer*>& layers, const Warn& warn);

    bool IsEmpty() const { return _targets.empty(); }
    bool IsSource(const SdfPath& path) const { return _targets.count(path) != 0; }
    /// Where the prim at a path was moved from; empty when it was not.
    SdfPath FindSource(const SdfPath& target) const;
    /// The targets by their sources, as they are authored.
    const Map& GetTargets() const { return _targets; }
    /// The same the other way around.
    const Map& GetSources() const { return _sources; }

    /// What the relocates at a path and below do to paths.
    Usd_PathMapping GetMapping(const SdfPath& path) const;

private:
    struct Collecting;

    Map _targets;
    Map _sources;
    Map _fullTargets; // by the path that the moved specs have in the end
};

PXR_NAMESPACE_CLOSE_SCOPE
