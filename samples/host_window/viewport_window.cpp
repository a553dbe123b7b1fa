#include "viewport_window.h"

#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/renderers/embree/embree_renderer.h>

#include <pxr/base/tf/token.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/primRange.h>
#include <pxr/usd/usdGeom/camera.h>

#include <any>
#include <array>
#include <cmath>
#include <exception>
#include <iostream>
#include <type_traits>
#include <utility>

using namespace vesk::framework::usd_viewport;
using vesk::base::Future;
using vesk::base::Work;
using vesk::framework::hydra_renderer::HydraRenderJobResult;
using vesk::framework::hydra_renderer::RenderParameters;
using vesk::framework::usd_document::StageChangesEvent;
using vesk::framework::usd_document::UsdDocument;
using vesk::usd::utils::ProjectionType;

namespace {

// Each view is shown three times: at once, better, and as good as the renderer makes it.
struct Step
{
    int samples; // 0: the renderer's default
    bool untilConverged;
};
constexpr std::array<Step, 3> kSteps{Step{0, false}, Step{4, true}, Step{0, true}};

constexpr float kPickRadius = 2.0f;     // logical pixels
constexpr double kClickSlack = 3.0;     // logical pixels that a click may move
constexpr float kWheelStep = 1.0f / 12; // of the distance to the pivot

ViewportWindow& self(GLFWwindow* window)
{
    return *static_cast<ViewportWindow*>(glfwGetWindowUserPointer(window));
}

} // namespace

ViewportWindow::ViewportWindow(std::shared_ptr<UsdDocument> document, std::shared_ptr<UiLoop> loop,
                               GLFWwindow* window)
    : m_document(std::move(document)), m_loop(std::move(loop)), m_window(window)
{
    const int size[2] = {960, 540};
    m_viewport = std::make_unique<ViewportModel>(m_document, nullptr, vesk::renderers::embree::kRendererId,
                                                 std::vector<vesk::usd::utils::Param<PXR_NS::VtValue>>{},
                                                 size, size, 1.0f, true, true, true, nullptr, nullptr);
    LightingModel lighting;
    lighting.setDefaultLightingEnabled(true);
    m_viewport->setLighting(lighting);

    // Events come on whichever thread sends them: they are only carried over.
    m_listener = m_document->getEventBus()->subscribeListener([this](const std::any& event) {
        if (std::any_cast<StageChangesEvent>(&event) || std::any_cast<ViewportCameraChangedEvent>(&event))
            m_loop->post(Work([this] { _viewChanged(); }));
    });
    _installCallbacks();
    onResize();
    _findCameras();
    _whenDone(m_viewport->checkCameraUpAxis(), [this] { _frameAll(ViewDirection::ThreeQuarters); });
}

ViewportWindow::~ViewportWindow()
{
    // After this no event and no frame of the viewport is on its way to the loop ...
    m_document->getEventBus()->unsubscribeListener(m_listener);
    m_viewport.reset();
    // ... and what has arrived there is not run any more.
    m_loop->close();
}

void ViewportWindow::_installCallbacks()
{
    glfwSetWindowUserPointer(m_window, this);
    glfwSetFramebufferSizeCallback(m_window, [](GLFWwindow* w, int, int) { self(w).onResize(); });
    glfwSetWindowRefreshCallback(m_window, [](GLFWwindow* w) { self(w).onRefresh(); });
    glfwSetMouseButtonCallback(
        m_window, [](GLFWwindow* w, int button, int action, int) { self(w).onButton(button, action); });
    glfwSetCursorPosCallback(m_window, [](GLFWwindow* w, double x, double y) { self(w).onMove(x, y); });
    glfwSetScrollCallback(m_window, [](GLFWwindow* w, double, double dy) { self(w).onScroll(dy); });
    glfwSetKeyCallback(m_window, [](GLFWwindow* w, int key, int, int action, int) {
        if (action == GLFW_PRESS) self(w).onKey(key);
    });
}

// What comes back from the document and the renderer.

template <class T, class F>
void ViewportWindow::_whenDone(const Future<T>& future, F use)
{
    future.recover(m_loop, [use = std::move(use)](const Future<T>& end) mutable {
        try {
            if constexpr (std::is_void_v<T>) {
                end.get();
                use();
            } else {
                use(end.get());
            }
        } catch (const std::exception& error) {
            std::cerr << "host_window: " << error.what() << "\n";
        }
    });
}

// A changed view is asked for at once, unless the first image of the view before it is still under way: that
// one comes soon, and the window would stay as it is if each movement of the pointer put it off.
void ViewportWindow::_viewChanged()
{
    m_isOutdated = true;
    if (!m_underWay || m_step > 0) _askForFrame(0);
}

void ViewportWindow::_askForFrame(std::size_t step)
{
    m_step = step;
    m_underWay = true;
    m_isOutdated = false;
    RenderParameters parameters;
    parameters.samples = kSteps[step].samples;
    parameters.untilConverged = kSteps[step].untilConverged;
    parameters.aovs = {PXR_NS::TfToken("color")};
    _whenDone(m_viewport->renderHydraFrame(parameters),
              [this, request = ++m_request](const HydraRenderJobResult& frame) {
                  if (request == m_request) _onFrame(frame);
              });
}

void ViewportWindow::_onFrame(const HydraRenderJobResult& frame)
{
    m_underWay = false;
    m_picture = frame.aovs.at(0).second;
    _draw();
    if (m_isOutdated) {
        _askForFrame(0);
    } else if (m_step + 1 < kSteps.size()) {
        _askForFrame(m_step + 1);
    } else {
        std::cout << "converged with " << frame.samples << " samples" << std::endl;
    }
}

// Rows come from top to bottom, and OpenGL draws from the bottom up.
void ViewportWindow::_draw()
{
    int width = 0;
    int height = 0;
    glfwGetFramebufferSize(m_window, &width, &height);
    glViewport(0, 0, width, height);
    glClear(GL_COLOR_BUFFER_BIT);
    if (m_picture.bytes) {
        glRasterPos2f(-1.0f, 1.0f);
        glPixelZoom(static_cast<float>(width) / static_cast<float>(m_picture.size[0]),
                    -static_cast<float>(height) / static_cast<float>(m_picture.size[1]));
        glDrawPixels(m_picture.size[0], m_picture.size[1], GL_RGBA, GL_UNSIGNED_BYTE,
                     m_picture.bytes->data());
    }
    glfwSwapBuffers(m_window);
}

// Input.

void ViewportWindow::onResize()
{
    int window[2];
    int pixels[2];
    glfwGetWindowSize(m_window, &window[0], &window[1]);
    glfwGetFramebufferSize(m_window, &pixels[0], &pixels[1]);
    if (window[0] < 1 || window[1] < 1 || pixels[0] < 1) return; // minimised
    m_viewport->setViewportSize(window);
    m_viewport->setRenderSize(window, static_cast<float>(pixels[0]) / static_cast<float>(window[0]));
    _viewChanged();
}

void ViewportWindow::onButton(int button, int action)
{
    if (action == GLFW_RELEASE) {
        const bool isClick = m_drag == Drag::Orbit && !m_moved;
        _endDrag();
        if (isClick) _select(m_x, m_y);
        return;
    }
    if (m_drag != Drag::None) return;
    if (button == GLFW_MOUSE_BUTTON_LEFT) _beginDrag(Drag::Orbit);
    if (button == GLFW_MOUSE_BUTTON_MIDDLE) _beginDrag(Drag::Pan);
    if (button == GLFW_MOUSE_BUTTON_RIGHT) _beginDrag(Drag::Zoom);
}

void ViewportWindow::_beginDrag(Drag drag)
{
    m_drag = drag;
    m_moved = false;
    m_dragX = m_x;
    m_dragY = m_y;
    m_viewport->beginCameraInteraction();
    // While the viewport follows a camera of the stage, the drag is one step to undo.
    m_document->beginUndoGroup(drag == Drag::Orbit ? ViewportModel::m_cameraOrbitUndoLabel
                               : drag == Drag::Pan ? ViewportModel::m_cameraPanUndoLabel
                                                   : ViewportModel::m_cameraZoomUndoLabel);
}

void ViewportWindow::_endDrag()
{
    if (m_drag == Drag::None) return;
    m_drag = Drag::None;
    m_viewport->endCameraInteraction();
    m_document->endUndoGroup();
}

void ViewportWindow::onMove(double x, double y)
{
    m_x = x;
    m_y = y;
    if (m_drag == Drag::None) return;
    if (!m_moved && std::hypot(x - m_dragX, y - m_dragY) < kClickSlack) return;
    m_moved = true;
    const auto dx = static_cast<float>(x - m_dragX);
    const auto dy = static_cast<float>(y - m_dragY);
    m_dragX = x;
    m_dragY = y;
    if (m_drag == Drag::Orbit) m_viewport->orbitCamera(dx, dy, ViewportModel::m_cameraOrbitUndoLabel);
    if (m_drag == Drag::Pan) m_viewport->panCamera(dx, dy, ViewportModel::m_cameraPanUndoLabel);
    if (m_drag == Drag::Zoom) m_viewport->zoomCamera(dx, dy, ViewportModel::m_cameraZoomUndoLabel);
    _viewChanged(); // camera events are held back until the drag ends
}

void ViewportWindow::onScroll(double dy)
{
    const auto width = static_cast<float>(m_viewport->renderSize()[0]);
    m_viewport->zoomCamera(static_cast<float>(dy) * width * kWheelStep, 0.0f,
                           ViewportModel::m_cameraZoomUndoLabel);
}

void ViewportWindow::onKey(int key)
{
    if (key == GLFW_KEY_ESCAPE) glfwSetWindowShouldClose(m_window, GLFW_TRUE);
    if (key == GLFW_KEY_F) _frameAll(ViewDirection::Current);
    if (key == GLFW_KEY_C) _nextCamera();
    if (key == GLFW_KEY_Z) _whenDone(m_document->undo(), [](bool) {});
    if (key == GLFW_KEY_Y) _whenDone(m_document->redo(), [](bool) {});
}

// What input asks for.

void ViewportWindow::_frameAll(ViewDirection direction)
{
    _whenDone(m_viewport->frameScene(ProjectionType::Perspective, direction, {}), [this] { _viewChanged(); });
}

void ViewportWindow::_select(double x, double y)
{
    const auto picked = m_viewport->getPrimPathsFromPointPicking(static_cast<float>(x), static_cast<float>(y),
                                                                 kPickRadius, false, true, false, {});
    _whenDone(picked, [this](const PrimPathPickingResult& result) {
        PXR_NS::SdfPathVector paths;
        for (const std::string& path : result.primPaths)
            paths.emplace_back(path);
        m_viewport->setSelectionPaths(paths);
        _viewChanged();
        std::cout << "selected " << (paths.empty() ? "nothing" : paths.front().GetString()) << std::endl;
    });
}

void ViewportWindow::_findCameras()
{
    const auto found = m_document->read("find cameras", [](const UsdDocument::ExecContext& context) {
        std::vector<std::string> paths{""};
        for (const PXR_NS::UsdPrim& prim : context.stage()->Traverse()) {
            if (prim.IsA<PXR_NS::UsdGeomCamera>()) paths.push_back(prim.GetPath().GetString());
        }
        return paths;
    });
    _whenDone(found, [this](const std::vector<std::string>& paths) { m_cameras = paths; });
}

void ViewportWindow::_nextCamera()
{
    if (m_cameras.empty()) return; // not found yet
    m_camera = (m_camera + 1) % m_cameras.size();
    const std::string& path = m_cameras[m_camera];
    _whenDone(m_viewport->setActiveCameraPath(path), [this, path] {
        _viewChanged();
        std::cout << "camera " << (path.empty() ? "free" : path) << std::endl;
    });
}
