#include "picked_paths.h"

#include "path_text.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

namespace {

using vesk::framework::hydra_renderer::PickingResult;

const std::string& candidate(const PickingResult& picked, const PickingRules& rules)
{
    // The secondary path goes before the tertiary one where both are wanted and there.
    if (rules.preferSecondaryPath && !picked.secondaryPath.empty()) return picked.secondaryPath;
    if (rules.preferTertiaryPath && !picked.tertiaryPath.empty()) return picked.tertiaryPath;
    return picked.primPath;
}

} // namespace

std::vector<std::string> pickedPaths(const PickingResult& picked, const PickingRules& rules)
{
    if (!picked.hit) return {};
    const std::string& path = candidate(picked, rules);
    if (!rules.expandToSelectors) return {path};
    if (rules.selectors.count(vesk::usd::model::Selector(pathFromText(path))) == 0) return {path};

    std::vector<std::string> paths;
    paths.reserve(rules.selectors.size());
    for (const vesk::usd::model::Selector& selector : rules.selectors)
        paths.push_back(selector.path().GetString());
    return paths;
}

} // namespace vesk::framework::usd_viewport
