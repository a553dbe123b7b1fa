#include "frame_setup.h"

#include <vesk/base/error_handling.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

[[noreturn]] void failInvalid(const std::string& text)
{
    throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument), text.c_str());
}

} // namespace

void checkRenderSize(const GfVec2i& size)
{
    const auto isUsable = [](int v) { return v > 0 && v <= kLargestRenderSize; };
    if (isUsable(size[0]) && isUsable(size[1])) return;
    failInvalid("cannot render a picture of " + std::to_string(size[0]) + "x" + std::to_string(size[1]) +
                " pixels; width and height must lie between 1 and " + std::to_string(kLargestRenderSize));
}

std::unique_ptr<FrameView> makeFrameView(const FrameSettings& settings, const PulledScene& pulled,
                                         const GfCamera& camera)
{
    const auto rays = CameraRays::make(camera, settings.fitPolicy, settings.size, pulled.scene->origin(),
                                       pulled.scene->reach());
    if (!rays) {
        failInvalid(
            "the camera has no usable view; its transform and apertures must be finite and its near plane "
            "must lie before its far plane");
    }
    return std::make_unique<FrameView>(pulled.scene, settings, *rays);
}

} // namespace vesk::renderers::embree
