#pragma once

#include <apps/support/outputs.h>
#include <apps/support/scene_session.h>

#include <vesk/framework/hydra_renderer/picking_result.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

#include <array>
#include <functional>
#include <memory>
#include <string>

namespace vesk::apps {

/// How pictures of a session are lit.
enum class Lights
{
    Default, ///< the default rig
    Scene,   ///< the scene's own lights
    None,    ///< neither
};

/// What a viewport is made with.
struct ViewportArguments
{
    CameraArguments camera;
    std::string renderer; ///< a registered id; empty: the default
    Lights lights = Lights::Default;
    std::string domeTexture; ///< image file of the default rig's dome; empty: none
};

/// Told how far a picture is: samples done and the fraction of the whole, 0 to 1.
using PictureProgress = std::function<void(int samples, float fraction)>;

/// A scene seen through one viewport model: sizes, time, lighting and camera are set from the command line's
/// arguments; every operation waits until it has happened.
///
/// Thread: the program's main thread. Ctrl-C cancels the picture that is under way.
class ViewportSession
{
public:
    /// Throws: `UsageError` for an unknown renderer; what `LightingModel` or the renderer's creation throw.
    ViewportSession(SceneSession& scene, const ViewportArguments& arguments);
    ~ViewportSession();

    vesk::framework::usd_viewport::ViewportModel& model() { return *m_model; }

    /// Turns the viewport to the stage's up axis and frames prims, or the whole scene for no paths.
    void frame(vesk::framework::usd_viewport::ViewDirection direction, const std::string& projection,
               const std::vector<PXR_NS::SdfPath>& paths);

    /// Looks through a camera of the stage, as it is at the viewport's time.
    void lookThrough(const PXR_NS::SdfPath& cameraPath);

    /// Sets up what the camera options ask for.
    /// Throws: `JobError` for a camera or a path that the stage has not.
    void applyCamera(const CameraArguments& arguments);

    /// Shows another time code and waits until the bounds of that time have been taken up.
    void showTime(double time);

    /// Renders one output and writes it to a file.
    /// \param samples samples per pixel, 0 for the renderer's default
    /// Throws: `JobError` with the file and the reason, also when the user has asked to stop.
    void capture(const std::filesystem::path& file, const std::string& aov, bool transparent,
                 std::optional<PXR_NS::GfVec4f> clearColor, int samples);

    /// Renders several outputs of one frame and writes each to its file.
    /// \param samples samples per pixel, 0 for the renderer's default
    /// Throws: `JobError` with the file and the reason, also when the user has asked to stop.
    void captureAll(const std::vector<Output>& outputs, bool transparent,
                    std::optional<PXR_NS::GfVec4f> clearColor, int samples);

    /// Finds what lies under a point, or nearest to it within a radius, all in logical pixels.
    /// Throws: `JobError` with the reason.
    vesk::framework::hydra_renderer::PickingResult pick(const std::array<float, 2>& at, float radius);

    /// Who is told about the progress of pictures from now on; may be empty.
    void setProgress(PictureProgress progress);

private:
    void _applyLighting(const ViewportArguments& arguments);

    struct Shared;
    SceneSession& m_scene;
    std::shared_ptr<Shared> m_shared;
    std::unique_ptr<vesk::framework::usd_viewport::ViewportModel> m_model;
};

} // namespace vesk::apps
