#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/vt/value.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>
#include <pxr/usd/sdf/path.h>
#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/aov_capture_request.h>
#include <vesk/framework/hydra_renderer/export.h>
#include <vesk/framework/hydra_renderer/hydra_render_job_result.h>
#include <vesk/framework/hydra_renderer/picking_result.h>
#include <vesk/framework/hydra_renderer/render_parameters.h>
#include <vesk/usd/hydra_renderer/lighting.h>
#include <vesk/usd/utils/param.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vesk::base {
class EventBus;
}
namespace vesk::framework::usd_document {
class UsdDocument;
}

namespace vesk::framework::hydra_renderer {

class HWContext;

/// Draws one viewport: keeps the settings of its picture and answers with frames, picks and captures.
///
/// A renderer is told every setting by its setters, reads the stage on the document's terms and never holds
/// the document alive longer than one use. A setter stores and returns; it never waits for a frame. Every
/// future that an operation returns ends: with its value, with one error that says what was wrong, or with
/// "broken promise" when the renderer is destroyed first. Coordinates and sizes are in physical pixels with
/// (0, 0) at the top left corner; colours are linear unless an operation says otherwise.
///
/// Thread: any, for every setter and request, also several at the same moment: the viewport's owner, the
/// document's task thread and the default pool each set the camera. A setter takes effect as a whole; of two
/// at once either may be the last. The owner destroys the renderer when no call is under way. Futures end on
/// the renderer's threads.
class VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT HydraRenderer
{
public:
    /// Makes the renderer that is registered under an id.
    /// \param eventBus the document's bus; events are sent on the bus of the document held at that moment
    /// \param document the document to show; kept weakly
    /// \param hwContext the host's graphics context, may be null for renderers that draw on the CPU
    /// \param rendererId a registered id; empty: the default
    /// \param rendererSettings settings of that renderer; unknown ones are ignored
    /// \param renderSize width and height in physical pixels
    /// \param viewportId goes into every `FrameRenderedEvent`
    /// \param enableSceneMaterials whether the scene's own materials are used
    /// \param enableColorCorrection whether colour is encoded for display (sRGB)
    /// \param enableAsyncRendering whether frames are refined after their first image
    /// \param progressCallback called with samples done, fraction done and whether the frame is converged;
    ///        returning false cancels the frame
    /// \param afterRenderCallback called after each image with whether it is converged
    /// Throws: `Exception` that names the known ids for an unknown id; what the renderer's factory throws.
    static std::unique_ptr<HydraRenderer>
    create(vesk::base::EventBus* eventBus,
           const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document,
           const std::shared_ptr<HWContext>& hwContext, const std::string& rendererId,
           const std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>& rendererSettings,
           const PXR_NS::GfVec2i& renderSize, unsigned int viewportId, bool enableSceneMaterials,
           bool enableColorCorrection, bool enableAsyncRendering,
           std::function<bool(int, float, bool)> progressCallback,
           std::function<void(bool)> afterRenderCallback);

    HydraRenderer(const HydraRenderer&) = delete;
    HydraRenderer& operator=(const HydraRenderer&) = delete;

    /// Ends every pending future with "broken promise". It waits for a callback of the host that runs on another
    /// thread, and for nothing else.
    virtual ~HydraRenderer();

    /// Shows another document from now on; null shows nothing.
    virtual void setDocument(const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document) = 0;

    /// Changes the drawing backend.
    /// \param rendererId an id that this renderer knows; empty: its default
    /// \param settings settings of the new backend
    /// Throws: `Exception` for an id that this renderer cannot switch to.
    virtual void switchRenderer(const std::string& rendererId,
                                const std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>& settings) = 0;

    /// Turns helpers such as the grid and the outlines off (true) or on (false).
    virtual void setPresentationModeEnabled(bool enabled) = 0;

    /// Sets the size of the picture in physical pixels; a size outside 1 to 16384 is reported by the next
    /// frame.
    virtual void setRenderSize(int width, int height) = 0;

    /// Sets the camera: a camera value in world space, or the path of a scene camera that is read from the
    /// stage at the current time for every frame.
    virtual void setCamera(const std::variant<PXR_NS::GfCamera, PXR_NS::SdfPath>& camera) = 0;

    /// Sets how the camera's window is fitted into the picture.
    virtual void setCameraFitPolicy(PXR_NS::CameraUtilConformWindowPolicy policy) = 0;

    /// Sets the lights, the default material, the scene ambient colour and the switch for the scene's own
    /// lights.
    virtual void setLighting(const vesk::usd::hydra_renderer::LightingInfo& lighting) = 0;

    /// Restricts drawing to a window of a larger picture: x, y, width, height in physical pixels. A width or
    /// height of 0 or less means the whole picture.
    virtual void setTiledRenderWindow(const PXR_NS::GfVec4i& window) = 0;

    /// Sets the time code that is shown; NaN is the default time.
    virtual void setCurrentTime(double time) = 0;

    /// Chooses proxy geometry (true) or render geometry (false); geometry of default purpose is always drawn.
    virtual void setRenderProxyGeometry(bool enabled) = 0;

    /// Turns the marking of selected and highlighted prims on or off.
    virtual void setRenderSelectionVisualization(bool enabled) = 0;

    /// Sets the selected prims; descendants are selected with them.
    virtual void setSelectionPaths(const std::vector<PXR_NS::SdfPath>& paths) = 0;

    /// Sets the display colour and strength of the selection marks.
    virtual void setSelectionColor(const PXR_NS::GfVec4f& color) = 0;

    /// Sets the highlighted prims; descendants are highlighted with them.
    virtual void setHighlightedPaths(const std::vector<PXR_NS::SdfPath>& paths) = 0;

    /// Sets the display colour and strength of the highlight marks.
    virtual void setHighlightColor(const PXR_NS::GfVec4f& color) = 0;

    /// Sets the display colour of the grid's lines seen from above the ground.
    virtual void setGridAboveColor(const PXR_NS::GfVec4f& color) = 0;

    /// Sets the display colour of the grid's lines seen from below the ground.
    virtual void setGridBelowColor(const PXR_NS::GfVec4f& color) = 0;

    /// Sets the width of the grid's lines in physical pixels.
    virtual void setGridThickness(float thickness) = 0;

    /// Turns the ground grid on or off.
    virtual void setGridEnabled(bool enabled) = 0;

    /// Sets the width of selection and highlight outlines in physical pixels.
    virtual void setOutlineThickness(float thickness) = 0;

    /// Sets the display colour and opacity behind the scene.
    virtual void setClearColor(const PXR_NS::GfVec4f& color) = 0;

    /// Sets the colour correction: `disabled` or `sRGB`.
    virtual void setColorCorrectionMode(const PXR_NS::TfToken& mode) = 0;

    /// Sets the draw mode: `points`, `wireframe`, `wireframeOnSurface`, `shadedFlat`, `shadedSmooth`,
    /// `geomOnly`, `geomFlat` or `geomSmooth`.
    virtual void setDrawMode(const PXR_NS::TfToken& mode) = 0;

    /// Shows an inner quantity in place of the colour; the empty token shows the colour.
    virtual void setPostProcessingDebugMode(const PXR_NS::TfToken& mode) = 0;

    /// Sets the callback that is called after each image with whether it is converged; may be empty.
    /// Thread: it is called on a thread of the renderer; what it throws is logged and dropped.
    virtual void setAfterRenderCallback(const std::function<void(bool)>& callback) = 0;

    /// Finds the hit nearest to a point of the picture, in pixels; of equally near ones the one nearest to
    /// the viewer. \param x,y physical pixels, a pixel's centre at +0.5; a point outside the picture is a
    /// miss \param radius physical pixels; 0 looks at the point alone
    virtual vesk::base::Future<PickingResult> singlePointPicking(float x, float y, float radius) = 0;

    /// Reads one pixel of a render output; missing channels are 0, a missing opacity is 1.
    /// \param position x and y in physical pixels
    /// \param aovName the output's Hydra name
    virtual vesk::base::Future<PXR_NS::GfVec4f> colorPicking(const std::pair<float, float>& position,
                                                             const PXR_NS::TfToken& aovName) = 0;

    /// Renders one output to a converged picture and writes it to a file.
    /// The file appears whole or not at all.
    /// \param path `.png` for colour, `.exr` for any output
    /// \param aov the output's Hydra name
    /// \param transparentBackground keeps the background's opacity at 0
    /// \param clearColor colour behind the scene for this picture alone
    /// \param samples samples per pixel, 0 for the renderer's default
    virtual vesk::base::Future<void> captureFrame(const std::filesystem::path& path,
                                                  const PXR_NS::TfToken& aov, bool transparentBackground,
                                                  std::optional<PXR_NS::GfVec4f> clearColor, int samples) = 0;

    /// Renders several outputs of one frame and writes each to its file.
    virtual vesk::base::Future<void> captureFrames(const std::vector<AovCaptureRequest>& requests,
                                                   bool transparentBackground) = 0;

    /// Renders one frame.
    /// Posts: `FrameRenderedEvent` on the document's bus for each image.
    virtual vesk::base::Future<HydraRenderJobResult> renderFrame(const RenderParameters& parameters) = 0;

protected:
    HydraRenderer();
};

} // namespace vesk::framework::hydra_renderer
