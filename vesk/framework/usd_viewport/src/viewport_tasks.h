#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/usd/sdf/path.h>
#include <vesk/framework/usd_document/exec_context.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/utils/projection_type.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace vesk::framework::usd_viewport {

/// The default time code as the utilities take it: scene cameras are followed there, whatever time is shown.
constexpr double kDefaultTime = std::numeric_limits<double>::quiet_NaN();

/// What the queued work of a viewport does when it runs: on the document's task thread with the context of
/// that moment, or in the continuation of such a task.
class ViewportTasks
{
public:
    using Context = vesk::framework::usd_document::DocumentExecContext;

    explicit ViewportTasks(ViewportModel& model) : m_model(model) {}

    /// Returns the bounds of the whole scene.
    PXR_NS::GfRange3f computeSceneBounds(const Context& context);

    /// Caches the bounds of the scene and frames those of the paths.
    void frameScene(const Context& context, vesk::usd::utils::ProjectionType projection,
                    ViewDirection direction, const std::vector<PXR_NS::SdfPath>& paths);

    /// Reads a scene camera at the viewport's time; nothing when no camera prim is there.
    std::optional<PXR_NS::GfCamera> readCamera(const Context& context, const std::string& cameraPath);

    /// Makes a camera that was read from the stage the viewport's.
    void acceptCamera(const Context& context, PXR_NS::GfCamera camera, bool updateDistanceToCenter,
                      const std::string& undoLabel);

    /// Follows a scene camera, or none.
    void setActiveCamera(const Context& context, const std::string& cameraPath);

    /// Turns the camera to the stage's up axis.
    void checkCameraUpAxis(const Context& context);

    /// Writes the newest camera into the scene camera that was followed when the write was queued.
    void writeCamera(const Context& context, const PXR_NS::SdfPath& path);

    /// Caches recomputed bounds and fits the camera's clipping range to them.
    void applySceneBounds(const PXR_NS::GfRange3f& bounds);

private:
    PXR_NS::GfRange3f _refreshSceneBounds(const Context& context, const std::vector<PXR_NS::SdfPath>& paths);
    PXR_NS::GfRange3f _sceneBounds(const Context& context, PXR_NS::UsdGeomBBoxCache& cache) const;
    float _framingFieldOfView(vesk::usd::utils::ProjectionType projection,
                              const PXR_NS::GfCamera& current) const;

    ViewportModel& m_model;
};

} // namespace vesk::framework::usd_viewport
