#include "thread_id.h"

#include <algorithm>
#include <vesk/base/event_bus.h>
#include <vesk/base/sync_point.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>
#include <vesk/framework/usd_document/stage_changes_event.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

PXR_NAMESPACE_USING_DIRECTIVE

// Events in and out, frame waiting, and the state that several threads read: document, time, edit target,
// path of the followed camera.
namespace vesk::framework::usd_viewport {

using vesk::framework::hydra_renderer::FrameRenderedEvent;
using vesk::framework::usd_document::StageChangesEvent;
using vesk::framework::usd_document::UsdDocument;

namespace {

// Whether a change of the stage names the camera: the prim itself among prims, any of its properties among
// properties.
bool concerns(const StageChangesEvent& change, const SdfPath& camera)
{
    const auto belongsToCamera = [&camera](const SdfPath& path) { return path.GetPrimPath() == camera; };
    const auto names = [&](const StageChangesEvent::PathList& paths) {
        return std::any_of(paths.begin(), paths.end(), belongsToCamera);
    };
    return change.resyncedPrimPaths.count(camera) != 0 || names(change.changedPropertyPaths) ||
           change.infoChangedPrimPaths.count(camera) != 0 || names(change.resyncedPropertyPaths);
}

} // namespace

std::shared_ptr<UsdDocument> ViewportModel::document() const { return _lockDocument(); }

std::shared_ptr<UsdDocument> ViewportModel::_lockDocument() const
{
    std::weak_ptr<UsdDocument> document;
    {
        const std::lock_guard<std::mutex> lock(m_stateMutex);
        document = m_document;
    }
    VESK_SYNC_POINT("model.document");
    return document.lock();
}

SdfPath ViewportModel::_activeCameraPath() const
{
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    return m_activeCameraPath;
}

void ViewportModel::_setActiveCameraPath(const SdfPath& path)
{
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    m_activeCameraPath = path;
}

std::string ViewportModel::activeCameraPath() const { return _activeCameraPath().GetAsString(); }

void ViewportModel::_handleEvent(const std::any& event)
{
    if (const auto* change = std::any_cast<StageChangesEvent>(&event)) {
        if (m_cameraInteractionActive) return;
        VESK_SYNC_POINT("model.stageChanged");
        const SdfPath camera = _activeCameraPath();
        if (camera.IsEmpty() || !concerns(*change, camera)) return;
        copyCameraFromPath(camera.GetAsString(), false, m_cameraCopyFromPathUndoLabel).detach();
    } else if (std::any_cast<FrameRenderedEvent>(&event)) {
        {
            const std::lock_guard<std::mutex> lock(m_frameWaitMutex);
            for (auto& [thread, released] : m_frameWaiters)
                released = true;
        }
        VESK_SYNC_POINT("frame.notify");
        m_frameRenderedCondition.notify_all();
    }
}

void ViewportModel::waitForFrameRendered()
{
    const std::uint32_t thread = currentThreadId();
    std::unique_lock<std::mutex> lock(m_frameWaitMutex);
    m_frameWaiters[thread] = false;
    VESK_SYNC_WAIT("frame.wait", lock, m_frameWaiters.at(thread));
    m_frameRenderedCondition.wait(lock, [this, thread] {
        const auto entry = m_frameWaiters.find(thread);
        return entry == m_frameWaiters.end() || entry->second;
    });
    m_frameWaiters.erase(thread);
    // Under the lock: the destructor may be waiting for the last entry to go.
    m_frameRenderedCondition.notify_all();
}

void ViewportModel::_releaseFrameWaiters()
{
    std::unique_lock<std::mutex> lock(m_frameWaitMutex);
    for (auto& [thread, released] : m_frameWaiters)
        released = true;
    m_frameRenderedCondition.notify_all();
    VESK_SYNC_WAIT("frame.empty", lock, m_frameWaiters.empty());
    m_frameRenderedCondition.wait(lock, [this] { return m_frameWaiters.empty(); });
}

void ViewportModel::notifyCameraChanged()
{
    VESK_SYNC_POINT("bracket.ask");
    if (m_cameraInteractionActive) return;
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) return;
    document->getEventBus()->sendEvent(ViewportCameraChangedEvent(document->getId(), m_viewportId));
}

double ViewportModel::currentTime() const { return m_currentTime.load(std::memory_order_relaxed); }

void ViewportModel::setCurrentTime(double time)
{
    if (time == currentTime()) return;
    m_currentTime.store(time, std::memory_order_relaxed);
    m_renderer->setCurrentTime(time);
    recomputeCachedSceneBounds();
}

const UsdEditTarget& ViewportModel::getEditTarget() const { return m_editTarget; }

void ViewportModel::setEditTarget(const UsdEditTarget& editTarget)
{
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    m_editTarget = editTarget;
}

UsdEditTarget ViewportModel::_editTarget() const
{
    const std::lock_guard<std::mutex> lock(m_stateMutex);
    return m_editTarget;
}

} // namespace vesk::framework::usd_viewport
