#include "frame_setup.h"

#include <vesk/base/error_handling.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

std::unique_ptr<FrameView> makeFrameView(const FrameSettings& settings, const PulledScene& pulled,
                                         const GfCamera& camera)
{
    const auto rays = CameraRays::make(camera, settings.fitPolicy, settings.size, pulled.scene->origin(),
                                       pulled.scene->reach());
    if (!rays) {
        throw base::error_handling::Exception(
            std::make_error_code(std::errc::invalid_argument),
            "the camera has no usable view; its transform and apertures must be finite and its near plane "
            "must lie before its far plane");
    }
    return std::make_unique<FrameView>(pulled.scene, settings, *rays);
}

} // namespace vesk::renderers::embree
