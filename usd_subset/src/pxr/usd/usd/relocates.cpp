#include "pxr/usd/usd/relocates.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/schema.h>

#include <set>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// What is wrong with one relocate, apart from all others; empty when nothing is.
std::string findFault(const SdfPath& source, const SdfPath& target)
{
    for (const SdfPath* path : {&source, &target}) {
        const bool mayBeEmpty = path == &target;
        if (!(mayBeEmpty && path->IsEmpty()) &&
            (!path->IsAbsolutePath() || !path->IsPrimPath() || path->ContainsPrimVariantSelection())) {
            return "both must be absolute paths of prims without variant selections";
        }
    }
    if (source == target) {
        return "it leads to where it comes from";
    }
    if (!target.IsEmpty() && (target.HasPrefix(source) || source.HasPrefix(target))) {
        return "one of the paths lies below the other";
    }
    return source.IsRootPrimPath() ? "a root prim cannot be moved" : std::string();
}

} // namespace

struct Usd_Relocates::Collecting
{
    struct Relocate
    {
        SdfPath target;
        const SdfLayer* layer;
        SdfPath fullSource; // where the moved specs are, other relocates considered
    };
    using Relocates = std::map<SdfPath, Relocate>; // by source

    const Warn& warn;
    Relocates relocates;
    std::map<SdfPath, std::vector<SdfPath>> sources; // by target
    std::set<SdfPath> conflicting;                   // sources

    void Collect(const SdfLayer& layer);
    void RemoveConflicts();
    void FindConflicts(const SdfPath& source, const SdfPath& target);
    void AddConflict(const SdfPath& source, const SdfPath& other, const char* how);
    void FindFullSource(const SdfPath& source, Relocate* relocate);
};

void Usd_Relocates::Collecting::Collect(const SdfLayer& layer)
{
    SdfRelocates authored;
    if (!layer.HasField(SdfPath::AbsoluteRootPath(), SdfFieldKeys->LayerRelocates, &authored)) {
        return;
    }
    for (const SdfRelocate& each : authored) {
        const std::string fault = findFault(each.first, each.second);
        if (fault.empty()) {
            relocates.emplace(each.first, Relocate{each.second, &layer, SdfPath()});
        } else {
            warn(TfStringPrintf("The relocate from <%s> to <%s> in @%s@ was left out: %s.",
                                each.first.GetText(), each.second.GetText(), layer.GetIdentifier().c_str(),
                                fault.c_str()));
        }
    }
}

void Usd_Relocates::Collecting::AddConflict(const SdfPath& source, const SdfPath& other, const char* how)
{
    const Relocate& relocate = relocates.at(source);
    const Relocate& otherRelocate = relocates.at(other);
    warn(TfStringPrintf(
        "The relocate from <%s> to <%s> in @%s@ was left out: its %s the relocate from <%s> to "
        "<%s> in @%s@.",
        source.GetText(), relocate.target.GetText(), relocate.layer->GetIdentifier().c_str(), how,
        other.GetText(), otherRelocate.target.GetText(), otherRelocate.layer->GetIdentifier().c_str()));
    conflicting.insert(source);
}

// Both paths of a relocate must be as all others leave them.
void Usd_Relocates::Collecting::FindConflicts(const SdfPath& source, const SdfPath& target)
{
    if (!target.IsEmpty()) {
        if (relocates.count(target)) {
            AddConflict(source, target, "target is the source of");
            AddConflict(target, source, "source is the target of");
        }
        for (SdfPath above = target.GetParentPath(); !above.IsAbsoluteRootPath();
             above = above.GetParentPath()) {
            if (relocates.count(above)) {
                AddConflict(source, above, "target lies below the source of");
            }
        }
    }
    for (SdfPath above = source.GetParentPath(); !above.IsRootPrimPath(); above = above.GetParentPath()) {
        if (relocates.count(above)) {
            AddConflict(source, above, "source lies below the source of");
        }
    }
}

void Usd_Relocates::Collecting::RemoveConflicts()
{
    for (const auto& each : relocates) {
        if (!each.second.target.IsEmpty()) {
            sources[each.second.target].push_back(each.first);
        }
        FindConflicts(each.first, each.second.target);
    }
    for (const SdfPath& source : conflicting) {
        const SdfPath target = relocates.at(source).target;
        const auto found = sources.find(target);
        if (found != sources.end() && found->second.size() == 1) {
            sources.erase(found);
        }
    }
    for (auto each = sources.begin(); each != sources.end();) {
        if (each->second.size() == 1) {
            ++each;
            continue;
        }
        std::vector<std::string> names;
        for (const SdfPath& source : each->second) {
            names.push_back("<" + source.GetString() + ">");
            conflicting.insert(source);
        }
        warn(TfStringPrintf("The relocates from %s were left out: they all lead to <%s>.",
                            TfStringJoin(names, ", ").c_str(), each->first.GetText()));
        each = sources.erase(each);
    }
    for (const SdfPath& source : conflicting) {
        relocates.erase(source);
    }
}

void Usd_Relocates::Collecting::FindFullSource(const SdfPath& source, Relocate* relocate)
{
    if (!relocate->fullSource.IsEmpty()) {
        return;
    }
    relocate->fullSource = source; // also where relocates lead in a circle
    for (SdfPath above = source; !above.IsAbsoluteRootPath(); above = above.GetParentPath()) {
        const auto found = sources.find(above);
        if (found != sources.end()) {
            const SdfPath& nearest = found->second.front();
            Relocate& other = relocates.at(nearest);
            FindFullSource(nearest, &other);
            relocate->fullSource = source.ReplacePrefix(other.target, other.fullSource);
            return;
        }
    }
}

Usd_Relocates::Usd_Relocates(const std::vector<const SdfLayer*>& layers, const Warn& warn)
{
    Collecting collecting{warn, {}, {}, {}};
    for (const SdfLayer* const layer : layers) {
        collecting.Collect(*layer);
    }
    collecting.RemoveConflicts();
    for (auto& each : collecting.relocates) {
        collecting.FindFullSource(each.first, &each.second);
    }
    for (const auto& each : collecting.relocates) {
        const SdfPath& target = each.second.target;
        _targets.emplace(each.first, target);
        _fullTargets.emplace(each.second.fullSource, target);
        if (!target.IsEmpty()) {
            _sources.emplace(target, each.first);
        }
    }
}

SdfPath Usd_Relocates::FindSource(const SdfPath& target) const
{
    const auto found = _sources.find(target);
    return found == _sources.end() ? SdfPath() : found->second;
}

Usd_PathMapping Usd_Relocates::GetMapping(const SdfPath& path) const
{
    std::vector<Usd_PathMapping::Pair> pairs{{SdfPath::AbsoluteRootPath(), SdfPath::AbsoluteRootPath()}};
    std::set<SdfPath> targets;
    for (const Map* map : {&_fullTargets, &_targets}) {
        for (auto each = map->lower_bound(path); each != map->end() && each->first.HasPrefix(path); ++each) {
            // Removed prims keep their paths: what is removed in this namespace may be named elsewhere.
            if (!each->second.IsEmpty() && targets.insert(each->second).second) {
                pairs.push_back(*each);
            }
        }
    }
    return Usd_PathMapping(std::move(pairs), SdfLayerOffset());
}

PXR_NAMESPACE_CLOSE_SCOPE
