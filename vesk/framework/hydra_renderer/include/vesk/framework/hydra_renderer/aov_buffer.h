#pragma once

#include <pxr/base/gf/vec2i.h>
#include <vesk/framework/hydra_renderer/export.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace vesk::framework::hydra_renderer {

/// The type of one channel of an `AovBuffer`.
enum class AovFormat : int
{
    UNorm8 = 0,  ///< 8 bits, 0 to 255 stands for 0 to 1; sRGB encoded where colour correction is on.
    Float32 = 1, ///< one float
    Int32 = 2    ///< one signed 32-bit integer
};

/// One render output, read back: rows from top to bottom, pixels from left to right, channels interleaved.
///
/// The bytes are shared and never change after the buffer was handed out.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT AovBuffer
{
    PXR_NS::GfVec2i size{0, 0};                             ///< width and height in physical pixels
    int channels = 0;                                       ///< values per pixel
    AovFormat format = AovFormat::UNorm8;                   ///< the type of each value
    std::shared_ptr<const std::vector<std::uint8_t>> bytes; ///< width * height * channels values, or null
};

} // namespace vesk::framework::hydra_renderer
