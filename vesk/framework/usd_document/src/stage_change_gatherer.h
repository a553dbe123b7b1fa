#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <unordered_set>

#include <pxr/base/tf/notice.h>
#include <pxr/base/tf/weakBase.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/notice.h>
#include <pxr/usd/usd/stage.h>

#include <vesk/framework/usd_document/stage_changes_event.h>

#include "camera_index.h"

namespace vesk::framework::usd_document {

/// Listens to the stage's notices and adds them up to one event.
///
/// While a task runs its notices wait for the task's end. A notice that comes at another time, because a host
/// edited the stage by itself, is announced through the callback, so that the document fetches it soon.
class StageChangeGatherer : public PXR_NS::TfWeakBase
{
public:
    struct Callbacks
    {
        std::function<void()> onChange;            ///< At every notice, on the editing thread.
        std::function<void()> onChangeOutsideTask; ///< As above, when no task runs.
    };

    StageChangeGatherer(const PXR_NS::UsdStageRefPtr& stage, Callbacks callbacks);
    ~StageChangeGatherer();

    StageChangeGatherer(const StageChangeGatherer&) = delete;
    StageChangeGatherer& operator=(const StageChangeGatherer&) = delete;

    /// A task begins. Thread: task.
    void beginTask();

    /// Takes what has come; nothing when nothing has. Thread: task.
    std::optional<StageChangesEvent> endTask();

    /// Names the cameras beneath what was recomposed or moved. Thread: task.
    void addCameras(StageChangesEvent& event);

    /// Forgets where cameras are: nobody was told of a change that may have moved them. Thread: task.
    void forgetCameras() { m_cameras.forget(); }

private:
    struct Gathered
    {
        StageChangesEvent event;
        std::unordered_set<PXR_NS::SdfPath, PXR_NS::SdfPath::Hash> listedChanged;
        std::unordered_set<PXR_NS::SdfPath, PXR_NS::SdfPath::Hash> listedResynced;
    };

    void _onObjectsChanged(const PXR_NS::UsdNotice::ObjectsChanged& notice);

    const Callbacks m_callbacks;
    CameraIndex m_cameras;
    PXR_NS::TfNotice::Key m_key;
    std::mutex m_mutex;
    Gathered m_gathered;
    bool m_taskRuns = false;
};

} // namespace vesk::framework::usd_document
