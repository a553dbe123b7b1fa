#pragma once

#include <pxr/base/gf/vec4f.h>
#include <pxr/base/tf/token.h>
#include <vesk/framework/hydra_renderer/export.h>

#include <filesystem>
#include <optional>

namespace vesk::framework::hydra_renderer {

/// One file of a capture of several render outputs.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT AovCaptureRequest
{
    /// The image file to write. Its extension decides the format: `.png` for colour, `.exr` for any output.
    std::filesystem::path path;

    /// The render output, by its Hydra name (`color`, `depth`, `normal`, ...).
    PXR_NS::TfToken aov;

    /// Display colour and opacity behind the scene; without a value the renderer's clear colour.
    std::optional<PXR_NS::GfVec4f> clearColor;

    /// Samples per pixel; 0 takes the renderer's default. The frame takes the largest of all its requests.
    int samples = 0;
};

} // namespace vesk::framework::hydra_renderer
