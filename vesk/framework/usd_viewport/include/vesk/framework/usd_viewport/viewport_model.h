#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4f.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/token.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/base/vt/value.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/editTarget.h>
#include <pxr/usd/usd/stage.h>
#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/hydra_renderer.h>
#include <vesk/framework/usd_viewport/export.h>
#include <vesk/framework/usd_viewport/lighting_model.h>
#include <vesk/usd/model/selector.h>
#include <vesk/usd/utils/param.h>
#include <vesk/usd/utils/projection_type.h>

#include <any>
#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vesk::framework::usd_document {
class UsdDocument;
} // namespace vesk::framework::usd_document

namespace vesk::framework::usd_viewport {

class LifeToken;
class ViewportTasks;

/// The direction from which ViewportModel::frameScene() looks at the framed box.
enum class ViewDirection : std::int32_t
{
    Current = 0,       ///< the camera keeps its direction
    Front = 1,         ///< from +Z, or from -Y on a Z-up scene
    Back = 2,          ///< from -Z, or from +Y on a Z-up scene
    Left = 3,          ///< from -X
    Right = 4,         ///< from +X
    Top = 5,           ///< from the world's up axis
    Bottom = 6,        ///< from below
    ThreeQuarters = 7, ///< from the front, the right and above
};

/// Posted on the document's bus after the camera of one of its viewports has changed.
struct VESK_FRAMEWORK_USD_VIEWPORT_EXPORT ViewportCameraChangedEvent
{
    ViewportCameraChangedEvent() = default;
    /// The event of a viewport of a document.
    ViewportCameraChangedEvent(std::string document, std::uint32_t viewport)
        : documentId(std::move(document)), viewportId(viewport)
    {}

    std::string documentId;       ///< the document's id
    std::uint32_t viewportId = 0; ///< ViewportModel::viewportId() of the sender
};

/// The prims that a pick selects.
struct VESK_FRAMEWORK_USD_VIEWPORT_EXPORT PrimPathPickingResult
{
    std::vector<std::string> primPaths;                           ///< textual paths; empty on a miss
    vesk::framework::hydra_renderer::PickingResult pickingResult; ///< the renderer's own answer
};

/// Gives a camera the field of view of a lens and moves it along its view axis so that what is in focus keeps
/// its place and its size in the picture (a dolly zoom). An orthographic camera becomes perspective.
/// \param camera changed in place; nobody is told
/// \param focalLength millimetres; used as it comes
/// Thread: any.
VESK_FRAMEWORK_USD_VIEWPORT_EXPORT void setRackFocus(PXR_NS::GfCamera& camera, float focalLength);

/// The model behind one interactive viewport onto a document's stage.
///
/// It keeps the viewport's camera, sizes, lighting and cached scene bounds, owns the renderer that draws the
/// viewport, and hands work on the stage to the document. It draws nothing itself and reads no device.
///
/// Four kinds of thread meet here. The owner (the host's interface thread) makes all calls that do not say
/// otherwise. The document's task thread runs the queued work, the default pool stores recomputed bounds, and
/// whoever sends on the document's bus runs the model's listener. What those threads touch is locked inside;
/// the references that getGfCamera(), getEditTarget(), lighting() and the sizes return are for the owner
/// alone.
///
/// The destructor waits for work of this model that runs on other threads, and queued work that has not begun
/// ends with "broken promise". A listener or task that waits for the owner while the owner destroys the model
/// therefore never ends. A listener, a task and a callback of the renderer may destroy the model that they
/// were called for. A listener of the camera event of a followed scene camera must not change that camera on
/// the same thread: the call throws `std::system_error` (resource_deadlock_would_occur).
class VESK_FRAMEWORK_USD_VIEWPORT_EXPORT ViewportModel
{
public:
    // Life

    /// Makes a viewport on a document and its renderer.
    /// \param document the document to show; kept weakly
    /// \param hwContext graphics context for the renderer; may be null for renderers that need none
    /// \param rendererId which renderer to make; empty for the default
    /// \param rendererSettings settings of the renderer
    /// \param renderSize width and height of the picture in logical pixels
    /// \param viewportSize width and height of the widget in logical pixels
    /// \param devicePixelRatio physical pixels per logical pixel
    /// \param enableSceneMaterials, enableColorCorrection, enableAsyncRendering flags of the renderer
    /// \param progressCallback called by the renderer with samples done, fraction done and whether the frame
    ///        is converged; returning false cancels the frame
    /// \param afterRenderCallback called by the renderer after an image with whether it is converged
    /// Throws: `Exception` InvalidDocument, without a log record, for a null document; what the renderer's
    /// creation and the bus throw.
    ViewportModel(const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document,
                  const std::shared_ptr<vesk::framework::hydra_renderer::HWContext>& hwContext,
                  const std::string& rendererId,
                  const std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>& rendererSettings,
                  const int (&renderSize)[2], const int (&viewportSize)[2], float devicePixelRatio,
                  bool enableSceneMaterials, bool enableColorCorrection, bool enableAsyncRendering,
                  std::function<bool(int, float, bool)> progressCallback,
                  std::function<void(bool)> afterRenderCallback);

    /// Leaves the document's bus, releases threads in waitForFrameRendered() and destroys the renderer.
    ~ViewportModel();

    ViewportModel(const ViewportModel&) = delete;
    ViewportModel& operator=(const ViewportModel&) = delete;

    /// Returns the document, or null once it is gone. Thread: any.
    std::shared_ptr<vesk::framework::usd_document::UsdDocument> document() const;

    /// Shows another document and recomputes the cached bounds; the document already shown changes nothing.
    /// Camera, active camera path and edit target stay.
    void setDocument(const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document);

    /// Returns the id of this viewport, unique in the process, from 1. Thread: any.
    unsigned int viewportId() const;

    /// Returns the renderer.
    const std::unique_ptr<vesk::framework::hydra_renderer::HydraRenderer>& getRenderer() const;

    /// Switches the renderer's backend unless `rendererId` is the one of the last call. The id is kept before
    /// the renderer is asked: after a failure the same id changes nothing.
    void switchRenderer(const std::string& rendererId,
                        const std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>& settings);

    // Events, time and edit target

    /// Blocks until the next frame has been rendered for any viewport of the document, or the model dies.
    /// There is no time limit: a thread that has to render the frame itself must not wait.
    /// Thread: any but the rendering one.
    void waitForFrameRendered();

    /// Posts a `ViewportCameraChangedEvent`, unless a camera interaction is open or the document is gone.
    /// Thread: any.
    void notifyCameraChanged();

    /// Time code that is shown; 0 at first. Thread: any.
    double currentTime() const;

    /// Shows another time and recomputes the cached bounds; the time already shown changes nothing.
    void setCurrentTime(double time);

    /// Where edits of the followed camera go. Each queued edit carries the target of its moment.
    const PXR_NS::UsdEditTarget& getEditTarget() const;
    /// Sends later edits of the followed camera to another target; a null one is the stage's own.
    void setEditTarget(const PXR_NS::UsdEditTarget& editTarget);

    /// Gives a setting on to the renderer: what it means stands at HydraRenderer's operation of that name.
    /// @{
    void setDrawMode(const PXR_NS::TfToken& mode);
    void setClearColor(const PXR_NS::GfVec4f& color);
    void setColorCorrectionMode(const PXR_NS::TfToken& mode);
    void setPostProcessingDebugMode(const PXR_NS::TfToken& mode);
    void setPresentationModeEnabled(bool enabled);
    void setTiledRenderWindow(const PXR_NS::GfVec4i& window);
    void setGridEnabled(bool enabled);
    void setGridThickness(float thickness);
    void setGridAboveColor(const PXR_NS::GfVec4f& color);
    void setGridBelowColor(const PXR_NS::GfVec4f& color);
    void setHighlightColor(const PXR_NS::GfVec4f& color);
    void setHighlightedPaths(const std::vector<PXR_NS::SdfPath>& paths);
    void setSelectionColor(const PXR_NS::GfVec4f& color);
    void setSelectionPaths(const std::vector<PXR_NS::SdfPath>& paths);
    void setAfterRenderCallback(const std::function<void(bool)>& callback);
    void setOutlineThickness(float thickness);
    void setCameraFitPolicy(PXR_NS::CameraUtilConformWindowPolicy policy);
    void setRenderSelectionVisualization(bool enabled);
    /// @}

    /// Shows proxy geometry (true) or render geometry (false); also chooses what the next bounds count.
    void setRenderProxyGeometry(bool enabled);

    // Sizes

    /// Sets the logical size of the picture; the renderer gets it times the ratio, rounded towards zero. The
    /// values already set change nothing.
    void setRenderSize(const int (&size)[2], float devicePixelRatio);
    const int (&renderSize() const)[2]; ///< returns the logical width and height of the picture

    /// Sets the logical size of the widget; the renderer is not told.
    void setViewportSize(const int (&size)[2]);
    const int (&viewportSize() const)[2]; ///< returns the logical width and height of the widget
    const int (&viewportSize())[2];       ///< returns the logical width and height of the widget

    /// Physical pixels per logical pixel.
    float devicePixelRatio() const;

    /// Converts logical viewport pixels to logical render pixels.
    std::array<float, 2> viewportToRenderCoordinates(float x, float y);

    // Frames: the renderer's own futures

    /// Renders one frame, see HydraRenderer::renderFrame().
    vesk::base::Future<vesk::framework::hydra_renderer::HydraRenderJobResult>
    renderHydraFrame(const vesk::framework::hydra_renderer::RenderParameters& parameters);

    /// Writes one render output to a file; see HydraRenderer::captureFrame().
    vesk::base::Future<void> captureHydraFrame(const std::filesystem::path& path, const PXR_NS::TfToken& aov,
                                               bool transparentBackground,
                                               std::optional<PXR_NS::GfVec4f> clearColor, int samples);
    /// Writes several outputs of one frame to files, see HydraRenderer::captureFrames().
    vesk::base::Future<void>
    captureHydraFrames(const std::vector<vesk::framework::hydra_renderer::AovCaptureRequest>& requests,
                       bool transparentBackground);

    // Camera

    /// Vertical field of view in degrees where a camera has none of its own; 45 at first. Class-wide, no
    /// lock.
    static float defaultVerticalFieldOfView();
    /// Sets the default field of view in degrees; any number is kept. Class-wide, no lock.
    static void setDefaultVerticalFieldOfView(float degrees);

    /// How new viewports fit the camera's window into the picture. Class-wide, no lock.
    static PXR_NS::CameraUtilConformWindowPolicy defaultCameraFitPolicy();
    /// Sets the fit policy of viewports that are made from now on. Class-wide, no lock.
    static void setDefaultCameraFitPolicy(PXR_NS::CameraUtilConformWindowPolicy policy);

    /// Returns the viewport camera. Another thread may change what the reference shows: see
    /// getViewportCamera().
    const PXR_NS::GfCamera& getGfCamera() const;

    /// Returns a copy of the viewport camera. Thread: any.
    PXR_NS::GfCamera getViewportCamera() const;

    /// Accepts a camera: to the renderer, or by a document task to the followed scene camera.
    /// \param camera in world space
    /// \param undoLabel label of that task; empty for `m_cameraUpdateUndoLabel`
    /// Posts: `ViewportCameraChangedEvent`, after the task when a scene camera is followed.
    void setGfCamera(const PXR_NS::GfCamera& camera, const std::string& undoLabel);

    /// Accepts a camera that differs from the current one; while a scene camera is followed, it is authored
    /// on `stage` at once. Thread: one that may write `stage`, as a rule a document task; the owner with an
    /// empty `stage`. Throws: what setGfCameraForCameraPath() throws.
    void setViewportCamera(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage, const PXR_NS::GfCamera& camera);

    /// Returns the camera with its aperture and clipping range fitted to this viewport.
    PXR_NS::GfCamera adjustGfCamera(const PXR_NS::GfCamera& camera);

    /// Returns the matrix from world to camera space.
    PXR_NS::GfMatrix4f getViewMatrix() const;

    /// Whether the scene's up axis is Z. A new value counts from the next gesture on. Thread: any.
    bool zUp() const;
    void setZUp(bool zUp); ///< sets the up axis: Z (true) or Y (false). Thread: any.

    // Navigation
    // Pointer motion is in logical render pixels, x to the right and y down. Motion of exactly zero does
    // nothing. The label is that of the edit of a followed camera, see setGfCamera().

    /// Opens the bracket around one gesture: camera events are held back until its end.
    /// Logs: warn "ViewportModel beginCameraInteraction: already active" when it is open.
    void beginCameraInteraction();

    /// Closes the bracket.
    /// Posts: one `ViewportCameraChangedEvent` when the camera changed since it was opened.
    /// Logs: warn "ViewportModel endCameraInteraction: already inactive" when it is not open.
    void endCameraInteraction();

    /// Turns the camera around the pivot; the whole width or height is one full turn.
    void orbitCamera(float dx, float dy, const std::string& undoLabel);

    /// Turns the camera around the pivot by angles in degrees: yaw about the world's up axis, pitch about the
    /// camera's right axis.
    void orbitCameraUsingDeltaAngles(float yaw, float pitch, const std::string& undoLabel);

    /// Turns the camera in place.
    void rotateCamera(float dx, float dy, const std::string& undoLabel);

    /// Slides the camera in its view plane so that what lies at the pivot's depth follows the pointer.
    void panCamera(float dx, float dy, const std::string& undoLabel);

    /// Moves the camera towards the pivot; the whole width or height is the whole distance.
    void zoomCamera(float dx, float dy, const std::string& undoLabel);

    /// Moves the camera along its right, up and backward axes, in stage units.
    void moveCamera(float du, float dv, float dw, const std::string& undoLabel);

    /// Distance from the camera to the pivot along the view axis, in stage units. Thread: any.
    float distanceToCenter() const;
    void setDistanceToCenter(float distanceToCenter); ///< in stage units; any number is kept. Thread: any.

    /// Size of manipulators, cut to 0.1 to 3.
    float gizmoScaleMultiplier() const;
    void setGizmoScaleMultiplier(float value); ///< sets the size of manipulators, cut to 0.1 to 3

    // Framing and stage cameras: document tasks
    // The future ends when the task has run, with its error when it failed.
    // Throws: `Exception` InvalidDocument when the document is gone, after one record.
    // Thread: any.

    /// Frames prims, or the whole scene when `paths` is empty or begins with "/". Refreshes the cached
    /// bounds. Logs: error "Framing without valid document".
    vesk::base::Future<void> frameScene(vesk::usd::utils::ProjectionType projection, ViewDirection direction,
                                        const std::vector<PXR_NS::SdfPath>& paths);

    /// Copies a scene camera into the viewport camera.
    /// \param cameraPath path of a camera prim; anything else fails the future with InvalidCamera
    /// \param updateDistanceToCenter measures the distance to the pivot against the cached bounds
    /// \param label undo label; empty for `m_cameraCopyFromPathUndoLabel`
    /// Logs: error "Copying camera from path without valid document", "Camera path {} for copying to viewport
    /// camera is not a valid UsdGeomCamera".
    vesk::base::Future<void> copyCameraFromPath(const std::string& cameraPath, bool updateDistanceToCenter,
                                                const std::string& label);

    /// Follows a scene camera from now on, or none for an empty path or one that names no camera. Refreshes
    /// the cached bounds. Logs: debug "setActiveCameraPath called without valid document".
    vesk::base::Future<void> setActiveCameraPath(const std::string& cameraPath);

    /// Returns the path of the followed camera, empty for none. Thread: any.
    std::string activeCameraPath() const;

    /// Turns the camera when the stage's up axis is not the viewport's.
    /// Logs: error "Checking up axis without valid document".
    vesk::base::Future<void> checkCameraUpAxis();

    // Scene bounds

    /// Computes the bounds of the whole scene in a document task.
    /// A task of the same document that waits for this future never ends.
    /// Returns a future without state when the document is gone.
    /// Logs: error "Getting scene bounds without valid document".
    /// Thread: any.
    vesk::base::Future<PXR_NS::GfRange3f> getSceneBounds();

    /// Computes the bounds, caches them and fits the camera's clipping range to them, all later on.
    /// Thread: any.
    void recomputeCachedSceneBounds();

    // Picking
    // Points and radii are in logical viewport pixels, (0, 0) at the top left.

    /// Finds what lies nearest to a point, see HydraRenderer::singlePointPicking().
    vesk::base::Future<vesk::framework::hydra_renderer::PickingResult> singlePointPicking(float x, float y,
                                                                                          float pickRadius);

    /// Picks the prims that a click selects.
    /// \param preferTertiaryPath takes the prim inside the prototype where there is one
    /// \param preferSecondaryPath takes the outermost instance where there is one; goes before the former
    /// \param expandToSelectors answers with all `selectors` when the picked prim is one of them
    /// \param selectors as a rule the current selection
    vesk::base::Future<PrimPathPickingResult> getPrimPathsFromPointPicking(
        float x, float y, float pickRadius, bool preferTertiaryPath, bool preferSecondaryPath,
        bool expandToSelectors,
        std::unordered_set<vesk::usd::model::Selector, vesk::usd::model::SelectorHash> selectors);

    /// Reads a render output under a point.
    vesk::base::Future<PXR_NS::GfVec4f> colorPicking(float x, float y, const PXR_NS::TfToken& aovName);

    // Lighting

    /// Returns the lighting as it was set.
    const LightingModel& lighting() const;

    /// Keeps the lighting and gives it to the renderer. After a failure the model already has the new values.
    /// Throws: `Exception` when the default material or lights cannot be made, after one record.
    void setLighting(const LightingModel& lighting);

    /// Gives the current lighting to the renderer again.
    void resetLighting();

    // Class-wide values: what the operations of the same names return

    static float m_defaultVerticalFieldOfView;                             ///< in degrees
    static PXR_NS::CameraUtilConformWindowPolicy m_defaultCameraFitPolicy; ///< of new viewports
    static const float kGizmoScaleMin; ///< the least size of manipulators: 0.1
    static const float kGizmoScaleMax; ///< the largest size of manipulators: 3

    /// A label's text as the registry returned it when the library was loaded, in the order of registration.
    /// @{
    static const std::string m_cameraAdjustUpDirectionUndoLabel;
    static const std::string m_cameraCopyFromPathUndoLabel;
    static const std::string m_cameraFrameBackViewUndoLabel;
    static const std::string m_cameraFrameBottomViewUndoLabel;
    static const std::string m_cameraFrameFrontViewUndoLabel;
    static const std::string m_cameraFrameLeftViewUndoLabel;
    static const std::string m_cameraFrameRightViewUndoLabel;
    static const std::string m_cameraFrameSceneUndoLabel;
    static const std::string m_cameraFrameTopViewUndoLabel;
    static const std::string m_cameraMatchPerspectiveAndFrameSceneUndoLabel;
    static const std::string m_cameraMoveUndoLabel;
    static const std::string m_cameraOrbitUndoLabel;
    static const std::string m_cameraPanUndoLabel;
    static const std::string m_cameraResetViewUndoLabel;
    static const std::string m_cameraRotateUndoLabel;
    static const std::string m_cameraSetBlurAmountUndoLabel;
    static const std::string m_cameraSetDepthOfFieldEnabledUndoLabel;
    static const std::string m_cameraSetFStopUndoLabel;
    static const std::string m_cameraSetFocalLengthUndoLabel;
    static const std::string m_cameraSetFocusDistanceUndoLabel;
    static const std::string m_cameraSetProjectionUndoLabel;
    static const std::string m_cameraSetVerticalFOVUndoLabel;
    static const std::string m_cameraUpdateUndoLabel;
    static const std::string m_cameraZoomUndoLabel;
    static const std::string m_matchEnvironmentLightUndoLabel;
    /// @}

private:
    // The bodies of the document tasks.
    friend class ViewportTasks;

    void _subscribe(const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document);
    void _unsubscribe(const std::shared_ptr<vesk::framework::usd_document::UsdDocument>& document);
    void _handleEvent(const std::any& event);
    void _releaseFrameWaiters();

    PXR_NS::GfRange3f _getCachedSceneBounds();
    void _setCachedSceneBounds(const PXR_NS::GfRange3f& bounds);

    void _setGfCamera(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage, const PXR_NS::GfCamera& camera,
                      const std::string& undoLabel);
    void _setRendererGfCamera(const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage,
                              const PXR_NS::GfCamera& camera, const std::string& undoLabel);
    void checkGfCameraFocusDistance(PXR_NS::GfCamera& camera);
    void checkGfCameraTransform(PXR_NS::GfCamera& camera) const;
    void updateGfCameraAperature(PXR_NS::GfCamera& camera);
    void updateGfCameraNearFar(PXR_NS::GfCamera& camera, float distance);
    float getGfCameraDistanceToCenter(const PXR_NS::GfCamera& camera);
    float getRenderAspectRatio() const;

    // Copies in and out of the state that several threads touch.
    std::shared_ptr<vesk::framework::usd_document::UsdDocument> _lockDocument() const;
    PXR_NS::SdfPath _activeCameraPath() const;
    void _setActiveCameraPath(const PXR_NS::SdfPath& path);
    void _storeCamera(const PXR_NS::GfCamera& camera);
    PXR_NS::UsdEditTarget _editTarget() const;
    PXR_NS::GfCamera _focusedCamera(const PXR_NS::GfCamera& camera);
    void _finishGesture(PXR_NS::GfCamera& camera, const PXR_NS::GfMatrix4d& transform,
                        const std::string& undoLabel);
    std::array<float, 2> _physicalPoint(float x, float y);

    static unsigned int s_nextViewportId;

    // Guards m_document, m_activeCameraPath, m_editTarget and m_gfCamera; held for one copy, over no call.
    mutable std::mutex m_stateMutex;
    std::shared_ptr<LifeToken> m_life;

    unsigned int m_viewportId;
    std::weak_ptr<vesk::framework::usd_document::UsdDocument> m_document;
    std::string m_rendererId;
    int m_viewportSize[2];
    int m_renderSize[2];
    LightingModel m_lighting;
    std::atomic<double> m_currentTime{0.0};
    std::atomic<float> m_distanceToCenter{0.0f};
    PXR_NS::SdfPath m_activeCameraPath;
    PXR_NS::UsdEditTarget m_editTarget;
    PXR_NS::GfCamera m_gfCamera;
    // Sequentially consistent: a change and the bracket's end never miss each other.
    std::atomic<bool> m_cameraInteractionActive{false};
    std::atomic<bool> m_cameraChangedDuringInteraction{false};
    // Held over the write, the posting and the notification of a followed camera; no caller holds a lock.
    std::mutex m_cameraMutex;
    bool m_interactionCameraValid = false;
    PXR_NS::GfCamera m_interactionCamera;
    PXR_NS::GfRange3f m_cachedSceneBounds;
    std::mutex m_sceneBoundsMutex;
    float m_devicePixelRatio;
    float m_gizmoScaleMultiplier = 1.0f;
    std::atomic<bool> m_zUp{false};
    std::atomic<bool> m_renderProxyGeometry{false};
    bool m_renderSelectionVisualization = true;
    std::unique_ptr<vesk::framework::hydra_renderer::HydraRenderer> m_renderer;
    unsigned int m_eventListenerId = 0;
    std::mutex m_frameWaitMutex;
    std::unordered_map<std::uint32_t, bool> m_frameWaiters;
    std::condition_variable m_frameRenderedCondition;
};

} // namespace vesk::framework::usd_viewport
