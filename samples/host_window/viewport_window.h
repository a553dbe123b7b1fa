#pragma once

#include "ui_loop.h"

#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

#include <GLFW/glfw3.h>

#include <memory>
#include <string>
#include <vector>

/// One window onto a document: turns input into calls of the model and shows the frames that come back.
///
/// Everything here runs on the window's thread: input because GLFW calls it there, answers because every
/// continuation names the loop.
class ViewportWindow
{
public:
    ViewportWindow(std::shared_ptr<vesk::framework::usd_document::UsdDocument> document,
                   std::shared_ptr<UiLoop> loop, GLFWwindow* window);
    ~ViewportWindow();
    ViewportWindow(const ViewportWindow&) = delete;
    ViewportWindow& operator=(const ViewportWindow&) = delete;

    void onResize();
    void onButton(int button, int action);
    void onMove(double x, double y);
    void onScroll(double dy);
    void onKey(int key);
    void onRefresh() { _draw(); }

private:
    enum class Drag
    {
        None,
        Orbit,
        Pan,
        Zoom
    };

    void _installCallbacks();
    void _beginDrag(Drag drag);
    void _endDrag();
    void _select(double x, double y);
    void _frameAll(vesk::framework::usd_viewport::ViewDirection direction);
    void _findCameras();
    void _nextCamera();

    void _viewChanged();
    void _askForFrame(std::size_t step);
    void _onFrame(const vesk::framework::hydra_renderer::HydraRenderJobResult& frame);
    void _draw();

    template <class T, class F>
    void _whenDone(const vesk::base::Future<T>& future, F use);

    std::shared_ptr<vesk::framework::usd_document::UsdDocument> m_document;
    std::shared_ptr<UiLoop> m_loop;
    GLFWwindow* m_window;
    std::unique_ptr<vesk::framework::usd_viewport::ViewportModel> m_viewport;
    unsigned m_listener = 0;

    Drag m_drag = Drag::None;
    bool m_moved = false;
    double m_x = 0.0; // the pointer, as the events told it: GLFW's own answer may be ahead of them
    double m_y = 0.0;
    double m_dragX = 0.0; // where the drag has come to
    double m_dragY = 0.0;

    std::vector<std::string> m_cameras; // the stage's, after an empty path for the window's own
    std::size_t m_camera = 0;

    unsigned m_request = 0;    // counts the frames that were asked for: older answers are dropped
    std::size_t m_step = 0;    // how fine the frame under way is
    bool m_underWay = false;   // whether there is one
    bool m_isOutdated = false; // whether the view has changed since it was asked for
    vesk::framework::hydra_renderer::AovBuffer m_picture;
};
