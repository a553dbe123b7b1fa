// The smallest host: opens a scene, frames it and writes one picture.
//
//   host_minimal SCENE PICTURE.png
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/renderers/embree/embree_renderer.h>

#include <pxr/base/tf/token.h>

#include <exception>
#include <iostream>
#include <optional>

using vesk::framework::usd_document::UsdDocument;
using vesk::framework::usd_viewport::LightingModel;
using vesk::framework::usd_viewport::ViewDirection;
using vesk::framework::usd_viewport::ViewportModel;
using vesk::usd::utils::ProjectionType;

namespace {

void render(const char* scene, const char* picture)
{
    vesk::renderers::embree::registerEmbreeRenderer();
    const auto document = UsdDocument::open(scene);

    const int size[2] = {640, 360};
    ViewportModel viewport(document, nullptr, vesk::renderers::embree::kRendererId, {}, size, size, 1.0f,
                           true, true, false, nullptr, nullptr);
    LightingModel lighting;
    lighting.setDefaultLightingEnabled(true);
    viewport.setLighting(lighting);

    // Work on the stage is queued and comes back as a future; a program without a window may simply wait.
    viewport.checkCameraUpAxis().get();
    viewport.frameScene(ProjectionType::Perspective, ViewDirection::ThreeQuarters, {}).get();
    viewport.captureHydraFrame(picture, PXR_NS::TfToken("color"), false, std::nullopt, 0).get();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: host_minimal SCENE PICTURE.png\n";
        return 2;
    }
    try {
        render(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::cerr << "host_minimal: " << error.what() << "\n";
        return 1;
    }
    std::cout << argv[2] << "\n";
    return 0;
}
