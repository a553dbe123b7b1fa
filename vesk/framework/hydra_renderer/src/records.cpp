#include <vesk/framework/hydra_renderer/frame_rendered_event.h>
#include <vesk/framework/hydra_renderer/hw_context.h>
#include <vesk/framework/hydra_renderer/picking_result.h>

namespace vesk::framework::hydra_renderer {

HWContext::HWContext() = default;
HWContext::~HWContext() = default;

// Defined in one place so that their type information is the same one in every library.
PickingResult::PickingResult() = default;
PickingResult::PickingResult(const PickingResult&) = default;
PickingResult::PickingResult(PickingResult&&) noexcept = default;
PickingResult& PickingResult::operator=(const PickingResult&) = default;
PickingResult& PickingResult::operator=(PickingResult&&) noexcept = default;
PickingResult::~PickingResult() = default;

FrameRenderedEvent::FrameRenderedEvent() = default;
FrameRenderedEvent::FrameRenderedEvent(const FrameRenderedEvent&) = default;
FrameRenderedEvent::FrameRenderedEvent(FrameRenderedEvent&&) noexcept = default;
FrameRenderedEvent& FrameRenderedEvent::operator=(const FrameRenderedEvent&) = default;
FrameRenderedEvent& FrameRenderedEvent::operator=(FrameRenderedEvent&&) noexcept = default;
FrameRenderedEvent::~FrameRenderedEvent() = default;

} // namespace vesk::framework::hydra_renderer
