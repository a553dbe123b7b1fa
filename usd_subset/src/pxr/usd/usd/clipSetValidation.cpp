#include "pxr/usd/usd/clipSetValidation.h"

#include "pxr/usd/usd/clipSetDefinition.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/tf/stringUtils.h>

#include <cmath>
#include <map>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::string findFaultInPaths(const Usd_ClipSetDefinition& definition)
{
    const std::string& primPath = *definition.primPath;
    if (primPath.empty()) {
        return "No clip prim path specified in 'primPath'";
    }
    for (const SdfAssetPath& asset : *definition.assetPaths) {
        if (asset.GetAssetPath().empty()) {
            return "Empty clip asset path in 'assetPaths'";
        }
    }
    std::string why;
    if (!SdfPath::IsValidPathString(primPath, &why)) {
        return why;
    }
    const SdfPath path(primPath);
    if (!path.IsAbsolutePath() || !path.IsPrimPath()) {
        return TfStringPrintf("Path '%s' in 'primPath' must be an absolute path to a prim", primPath.c_str());
    }
    return std::string();
}

std::string findFaultInActive(const Usd_ClipSetDefinition& definition)
{
    const auto clipCount = static_cast<double>(definition.assetPaths->size());
    for (const GfVec2d& active : *definition.active) {
        if (std::isnan(active[0])) {
            return "A time in 'active' is no number";
        }
        if (!(active[1] >= 0 && active[1] < clipCount)) {
            return TfStringPrintf("Invalid clip index %g in 'active'", active[1]);
        }
    }
    std::map<double, int> clips;
    for (const GfVec2d& active : *definition.active) {
        const int clip = static_cast<int>(active[1]);
        const auto known = clips.emplace(active[0], clip);
        if (!known.second) {
            return TfStringPrintf("Clip %d cannot be active at time %.3f in 'active' because clip %d was "
                                  "already specified as active at this time.",
                                  clip, active[0], known.first->second);
        }
    }
    return std::string();
}

std::string findFaultInTimes(const VtVec2dArray& times)
{
    std::map<double, int> counts;
    for (const GfVec2d& time : times) {
        if (std::isnan(time[0]) || std::isnan(time[1])) {
            return "A time in 'times' is no number";
        }
        if (++counts[time[0]] > 2) {
            return TfStringPrintf(
                "Cannot have more than two entries in 'times' with the same stage time (%.3f).", time[0]);
        }
    }
    return std::string();
}

} // namespace

std::string Usd_FindFaultInClips(const Usd_ClipSetDefinition& definition)
{
    std::string fault = findFaultInPaths(definition);
    if (fault.empty()) {
        fault = findFaultInActive(definition);
    }
    if (fault.empty() && definition.times) {
        fault = findFaultInTimes(*definition.times);
    }
    return fault;
}

PXR_NAMESPACE_CLOSE_SCOPE
