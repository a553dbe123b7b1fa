#pragma once

#include <pxr/base/gf/vec3d.h>
#include <vesk/framework/hydra_renderer/export.h>

#include <string>

namespace vesk::framework::hydra_renderer {

/// What lies under a picked point of the image.
///
/// All paths are in textual `SdfPath` form and empty when they do not apply. On a miss only `hit` is
/// meaningful.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT PickingResult
{
    PickingResult();
    PickingResult(const PickingResult&);
    PickingResult(PickingResult&&) noexcept;
    PickingResult& operator=(const PickingResult&);
    PickingResult& operator=(PickingResult&&) noexcept;
    ~PickingResult();

    /// Whether anything was hit within the radius.
    bool hit = false;

    /// The prim that was hit. For geometry inside an instance it is the prim as it is seen on the stage.
    std::string primPath;

    /// The outermost instance or point instancer that brought the hit prim onto the stage.
    std::string secondaryPath;

    /// The index of the hit copy inside its point instancer, -1 where there is none.
    int instanceIndex = -1;

    /// The prim inside the prototype that was hit.
    std::string tertiaryPath;

    /// The hit point in world space, in stage units.
    PXR_NS::GfVec3d point{0.0, 0.0, 0.0};

    /// The unit surface normal at the hit point in world space, turned towards the viewer.
    PXR_NS::GfVec3d normal{0.0, 0.0, 0.0};

    /// The distance of the hit point from the camera along the view axis, in stage units.
    double depth = 0.0;
};

} // namespace vesk::framework::hydra_renderer
