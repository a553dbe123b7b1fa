#pragma once

#include "hydra_view.h"

#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/usd/sdf/path.h>
#include <vesk/renderers/picture/frame_settings.h>

#include <cstdint>
#include <vector>

namespace vesk::renderers::hydra {

/// A rectangle of a picture, in pixels from the top left.
struct PixelRect
{
    PXR_NS::GfVec2i origin{0, 0};
    PXR_NS::GfVec2i size{0, 0};

    std::size_t count() const
    {
        return static_cast<std::size_t>(size[0]) * static_cast<std::size_t>(size[1]);
    }
};

/// What lies at a pixel, in Hydra's own numbers.
struct RawPixels
{
    std::vector<float> depth; ///< of the depth buffer
    std::vector<std::int32_t> prim;
    std::vector<std::int32_t> instance;
    std::vector<std::int32_t> element;
    std::vector<PXR_NS::GfVec3f> eyeNormal; ///< empty where the delegate has none
};

/// Which prim of the stage a pixel shows.
struct HitNames
{
    PXR_NS::SdfPath prim;
    PXR_NS::SdfPath instance;
    PXR_NS::SdfPath prototype;
    int instanceIndex = -1;
};

/// A pixel that a pick has hit.
struct RawHit
{
    PXR_NS::GfVec2d pixel{0.0, 0.0}; ///< the sample's place in the picture, pixels from the top left
    double depth = 1.0;              ///< of the depth buffer
    PXR_NS::GfVec3f normal{0.0f, 0.0f, 1.0f};
    std::int32_t prim = -1;
    std::int32_t instance = -1;
};

/// Everything that one drawing depends on besides the stage.
struct DrawRequest
{
    picture::FrameSettings settings;
    HydraView view;
    bool zUp = false;
    float complexity = 1.0f;
    PXR_NS::GfVec2d shift{0.0, 0.0}; ///< of the picture, in pixels
};

} // namespace vesk::renderers::hydra
