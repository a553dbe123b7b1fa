#include <vesk/framework/usd_document/stage_changes_event.h>

namespace vesk::framework::usd_document {

// Out of line: the type information that std::any compares lives in this library alone.
StageChangesEvent::StageChangesEvent() = default;
StageChangesEvent::StageChangesEvent(const StageChangesEvent&) = default;
StageChangesEvent::StageChangesEvent(StageChangesEvent&&) noexcept = default;
StageChangesEvent& StageChangesEvent::operator=(const StageChangesEvent&) = default;
StageChangesEvent& StageChangesEvent::operator=(StageChangesEvent&&) noexcept = default;
StageChangesEvent::~StageChangesEvent() = default;

} // namespace vesk::framework::usd_document
