#pragma once

#include <vesk/framework/hydra_renderer/export.h>

#include <cstdint>
#include <string>

namespace vesk::framework::hydra_renderer {

/// Sent on the document's bus each time that a renderer has finished an image.
struct VESK_FRAMEWORK_HYDRA_RENDERER_EXPORT FrameRenderedEvent
{
    FrameRenderedEvent();
    FrameRenderedEvent(const FrameRenderedEvent&);
    FrameRenderedEvent(FrameRenderedEvent&&) noexcept;
    FrameRenderedEvent& operator=(const FrameRenderedEvent&);
    FrameRenderedEvent& operator=(FrameRenderedEvent&&) noexcept;
    ~FrameRenderedEvent();

    std::string documentId;       ///< the id of the document that is shown
    std::uint32_t viewportId = 0; ///< the viewport whose renderer drew the image
    std::uint64_t frameIndex = 0; ///< counts the renderer's frames, from 1
    bool converged = false;       ///< whether the image holds all its samples
};

} // namespace vesk::framework::hydra_renderer
