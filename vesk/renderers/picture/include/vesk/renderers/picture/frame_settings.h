#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4i.h>
#include <pxr/base/tf/token.h>
#include <pxr/imaging/cameraUtil/conformWindow.h>
#include <pxr/usd/sdf/path.h>
#include <vesk/renderers/picture/export.h>
#include <vesk/usd/hydra_renderer/lighting.h>

#include <cstdint>
#include <variant>
#include <vector>

namespace vesk::framework::hydra_renderer {
struct RendererCreateInfo;
}

namespace vesk::renderers::picture {

enum class DrawMode : std::uint8_t
{
    ShadedSmooth,
    ShadedFlat,
    Wireframe,
    WireframeOnSurface,
    Points,
    GeomOnly,  ///< no scene materials, no display colours
    GeomFlat,  ///< no scene materials
    GeomSmooth ///< no scene materials
};

enum class DebugMode : std::uint8_t
{
    None,
    Depth,
    Normal,
    PrimId,
    ElementId,
    InstanceId,
    Cost ///< how many rays a pixel took
};

/// Everything that the picture of one frame depends on besides the scene: a value, copied from the setters'
/// state.
struct FrameSettings
{
    PXR_NS::GfVec2i size{0, 0};
    PXR_NS::GfVec4i window{0, 0, 0, 0}; ///< a width or height of 0 or less: the whole picture
    std::variant<PXR_NS::GfCamera, PXR_NS::SdfPath> camera;
    PXR_NS::CameraUtilConformWindowPolicy fitPolicy = PXR_NS::CameraUtilFit;
    vesk::usd::hydra_renderer::LightingInfo lighting;
    double time = 0.0;
    bool proxyPurpose = false;
    bool presentation = false;
    bool showSelection = true;
    std::vector<PXR_NS::SdfPath> selection;
    std::vector<PXR_NS::SdfPath> highlighted;
    PXR_NS::GfVec4f selectionColor{1.0f, 0.72f, 0.15f, 1.0f};
    PXR_NS::GfVec4f highlightColor{0.35f, 0.75f, 1.0f, 1.0f};
    PXR_NS::GfVec4f gridAboveColor{0.20f, 0.21f, 0.23f, 0.55f};
    PXR_NS::GfVec4f gridBelowColor{0.35f, 0.22f, 0.22f, 0.45f};
    float gridThickness = 1.0f;
    bool gridEnabled = true;
    float outlineThickness = 2.0f;
    PXR_NS::GfVec4f clearColor{0.42f, 0.45f, 0.49f, 1.0f};
    bool transparentBackground = false;
    bool colorCorrection = true;
    bool sceneMaterials = true;
    DrawMode drawMode = DrawMode::ShadedSmooth;
    DebugMode debugMode = DebugMode::None;
    int samples = 16;
};

inline constexpr int kMostSamples = 4096;        ///< per pixel
inline constexpr int kLargestRenderSize = 16384; ///< of a picture's width and height, in pixels

/// The settings of a new renderer: those of its creation, the default rig of lights and no others.
VESK_RENDERERS_PICTURE_EXPORT FrameSettings
initialSettings(const vesk::framework::hydra_renderer::RendererCreateInfo& info);

/// The draw mode of a name; `shadedSmooth` for one that is none.
VESK_RENDERERS_PICTURE_EXPORT DrawMode drawModeOf(const PXR_NS::TfToken& name);

/// The debug mode of a name; none for one that is none.
VESK_RENDERERS_PICTURE_EXPORT DebugMode debugModeOf(const PXR_NS::TfToken& name);

/// Throws: `Exception` for a size that no picture can have.
VESK_RENDERERS_PICTURE_EXPORT void checkRenderSize(const PXR_NS::GfVec2i& size);

} // namespace vesk::renderers::picture
