#pragma once

#include <string>
#include <unordered_set>
#include <vector>
#include <vesk/framework/hydra_renderer/picking_result.h>
#include <vesk/usd/model/selector.h>

namespace vesk::framework::usd_viewport {

/// How the prims that a click selects are chosen from what was hit.
struct PickingRules
{
    bool preferTertiaryPath;
    bool preferSecondaryPath;
    bool expandToSelectors;
    std::unordered_set<vesk::usd::model::Selector, vesk::usd::model::SelectorHash> selectors;
};

/// Returns the textual paths that a pick selects; none for a miss.
std::vector<std::string> pickedPaths(const vesk::framework::hydra_renderer::PickingResult& picked,
                                     const PickingRules& rules);

} // namespace vesk::framework::usd_viewport
