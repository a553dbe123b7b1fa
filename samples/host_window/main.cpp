// A window onto a scene.
//
//   host_window SCENE
//
//   left drag   orbit             click  select the prim under the pointer
//   middle drag pan               F      frame the whole scene
//   right drag  zoom              C      look through the next camera of the stage, at last freely again
//   wheel       zoom              Z, Y   undo, redo what was done to a camera of the stage
//                                 Esc    quit
#include "ui_loop.h"
#include "viewport_window.h"

#include <vesk/renderers/embree/embree_renderer.h>

#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace {

/// The window system, from its start to its end.
struct WindowSystem
{
    WindowSystem()
    {
        if (!glfwInit()) throw std::runtime_error("the window system does not start; is there a display?");
    }
    ~WindowSystem() { glfwTerminate(); }
};

void show(const char* scene)
{
    using vesk::framework::usd_document::UsdDocument;

    vesk::renderers::embree::registerEmbreeRenderer();
    const auto document = UsdDocument::open(scene);

    const WindowSystem windowSystem;
    GLFWwindow* window = glfwCreateWindow(960, 540, scene, nullptr, nullptr);
    if (!window) throw std::runtime_error("no window with an OpenGL context can be made");
    glfwMakeContextCurrent(window);

    const auto loop = std::make_shared<UiLoop>();
    {
        const ViewportWindow viewport(document, loop, window);
        while (!glfwWindowShouldClose(window))
            loop->runOnce();
    }
    // Answers may still arrive from other threads; from here on they are dropped.
    loop->close();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: host_window SCENE\n";
        return 2;
    }
    try {
        show(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << "host_window: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
