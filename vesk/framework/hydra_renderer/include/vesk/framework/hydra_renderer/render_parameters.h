#pragma once

#include <pxr/base/tf/token.h>
#include <vesk/framework/hydra_renderer/export.h>

#include <vector>

namespace vesk::framework::hydra_renderer {

/// What one call of `HydraRenderer::renderFrame` is asked to do.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT RenderParameters
{
    /// Samples per pixel after which the frame counts as converged; 0 takes the renderer's default.
    int samples = 0;

    /// With false the frame ends after its first, fast image, which is not converged: one sample per pixel, or of a
    /// large picture one for each small block of pixels.
    bool untilConverged = true;

    /// The render outputs whose pixels the result carries, by their Hydra names; empty: none is read back.
    std::vector<PXR_NS::TfToken> aovs;
};

} // namespace vesk::framework::hydra_renderer
