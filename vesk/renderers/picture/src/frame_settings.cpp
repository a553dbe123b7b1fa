#include <vesk/renderers/picture/frame_settings.h>

#include <vesk/base/error_handling.h>
#include <vesk/framework/hydra_renderer/renderer_registry.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::picture {

DrawMode drawModeOf(const TfToken& token)
{
    if (token == "points") return DrawMode::Points;
    if (token == "wireframe") return DrawMode::Wireframe;
    if (token == "wireframeOnSurface") return DrawMode::WireframeOnSurface;
    if (token == "shadedFlat") return DrawMode::ShadedFlat;
    if (token == "geomOnly") return DrawMode::GeomOnly;
    if (token == "geomFlat") return DrawMode::GeomFlat;
    if (token == "geomSmooth") return DrawMode::GeomSmooth;
    return DrawMode::ShadedSmooth;
}

DebugMode debugModeOf(const TfToken& token)
{
    if (token == "depth") return DebugMode::Depth;
    if (token == "normal" || token == "normals") return DebugMode::Normal;
    if (token == "primId") return DebugMode::PrimId;
    if (token == "elementId") return DebugMode::ElementId;
    if (token == "instanceId") return DebugMode::InstanceId;
    if (token == "cost") return DebugMode::Cost;
    return DebugMode::None;
}

namespace {

// Until the host sets a lighting the rig alone is on: a stage's own lights would add to it.
usd::hydra_renderer::LightingInfo initialLighting()
{
    usd::hydra_renderer::LightingInfo info;
    info.lights = usd::hydra_renderer::createDefaultLighting({}, false, 0.0f).takeValue();
    info.material = usd::hydra_renderer::createDefaultSimpleMaterial().takeValue();
    info.sceneLightsEnabled = false;
    return info;
}

} // namespace

FrameSettings initialSettings(const framework::hydra_renderer::RendererCreateInfo& info)
{
    FrameSettings s;
    s.size = info.renderSize;
    s.camera = GfCamera();
    s.lighting = initialLighting();
    s.sceneMaterials = info.enableSceneMaterials;
    s.colorCorrection = info.enableColorCorrection;
    return s;
}

void checkRenderSize(const GfVec2i& size)
{
    const auto isUsable = [](int v) { return v > 0 && v <= kLargestRenderSize; };
    if (isUsable(size[0]) && isUsable(size[1])) return;
    const std::string text = "cannot render a picture of " + std::to_string(size[0]) + "x" +
                             std::to_string(size[1]) + " pixels; width and height must lie between 1 and " +
                             std::to_string(kLargestRenderSize);
    throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument), text.c_str());
}

} // namespace vesk::renderers::picture
