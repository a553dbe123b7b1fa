#pragma once

#include "dome_light.h"
#include "draw_request.h"
#include "render_buffer_reading.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usdImaging/usdImagingGL/engine.h>
#include <vesk/renderers/picture/film.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesk::renderers::hydra {

/// UsdImagingGLEngine with the drawing taken apart: when the stage has been read, which outputs are drawn,
/// what lies at the pixels. Thread: the drawing thread, with the context current.
class Engine final : public PXR_NS::UsdImagingGLEngine
{
public:
    /// Throws: `Exception` with one sentence where the delegate cannot be used here.
    Engine(const std::string& rendererId, bool gpuEnabled);
    ~Engine();

    /// Draws the colour. With a valid root the stage is read first, and `stageRead` called when it is not
    /// needed any more; with an invalid one, what was read before is drawn.
    void drawColor(const DrawRequest& request, const PXR_NS::UsdPrim& root,
                   const std::function<void()>& stageRead);

    /// Adds the colour that was drawn in a rectangle of the picture to a film of that rectangle.
    void addColorTo(picture::Film& film, const PixelRect& rect);

    /// Whether another drawing of the same request would make it better.
    bool isProgressing() const { return !IsConverged(); }

    /// Reads the depth that was drawn with the colour.
    std::vector<float> depthOfColor(const PixelRect& rect);

    /// Draws and reads what lies at the pixels' centres in a rectangle of the picture.
    RawPixels drawGeometry(const DrawRequest& request, const PixelRect& rect);

    /// Takes over what changed of the stage, without drawing.
    void readStage(const DrawRequest& request, const PXR_NS::UsdPrim& root);

    /// Looks at a rectangle of the picture, one sample in the middle of each of its cells.
    std::vector<RawHit> pick(const DrawRequest& request, const PXR_NS::GfVec2d& corner,
                             const PXR_NS::GfVec2i& cells, double cellSize);

    /// Names what a pair of Hydra's numbers stands for. The stage is read.
    HitNames namesOf(std::int32_t prim, std::int32_t instance, const PXR_NS::UsdStageRefPtr& stage);

private:
    PXR_NS::UsdImagingGLRenderParams _params(const DrawRequest& request) const;
    void _setUp(const DrawRequest& request, const PXR_NS::UsdImagingGLRenderParams& params);
    void _setLights(const DrawRequest& request);
    void _execute(const PXR_NS::UsdImagingGLRenderParams& params, const std::function<void()>& stageRead);
    void _setOutputs(const PXR_NS::TfTokenVector& outputs, bool multiSampled);

    std::unique_ptr<DomeLight> m_dome;
    PXR_NS::GlfSimpleLightVector m_lights;
    PXR_NS::GlfSimpleMaterial m_material;
    bool m_lightsAreSet = false;
};

} // namespace vesk::renderers::hydra
