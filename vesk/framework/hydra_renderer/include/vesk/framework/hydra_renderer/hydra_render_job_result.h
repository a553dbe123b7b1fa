#pragma once

#include <pxr/base/gf/vec2i.h>
#include <pxr/base/tf/token.h>
#include <vesk/framework/hydra_renderer/aov_buffer.h>
#include <vesk/framework/hydra_renderer/export.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace vesk::framework::hydra_renderer {

/// What one finished frame was.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT HydraRenderJobResult
{
    /// Counts the frames of one renderer, from 1.
    std::uint64_t frameIndex = 0;

    /// Whether all samples that were asked for are in the image.
    bool converged = false;

    /// Samples per pixel that the image holds; 0 where its pixels share samples in blocks.
    int samples = 0;

    /// Width and height of the image in physical pixels.
    PXR_NS::GfVec2i size{0, 0};

    /// Wall time from the call to the finished image, in seconds.
    double seconds = 0.0;

    /// The outputs that `RenderParameters::aovs` named, in that order.
    std::vector<std::pair<PXR_NS::TfToken, AovBuffer>> aovs;
};

} // namespace vesk::framework::hydra_renderer
