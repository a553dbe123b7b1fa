#pragma once

#include <pxr/base/gf/vec3d.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

#include <optional>
#include <string>

namespace vesk::framework::usd_viewport {

/// How a view direction is framed.
struct FramedView
{
    std::optional<PXR_NS::GfVec3d> direction; ///< from the subject to the camera; none keeps the camera's own
    const std::string& undoLabel;             ///< the label of the camera's change
};

/// Returns how a direction is framed; a value outside the enumeration counts as `ViewDirection::Current`.
FramedView framedView(ViewDirection direction, bool zUp);

} // namespace vesk::framework::usd_viewport
