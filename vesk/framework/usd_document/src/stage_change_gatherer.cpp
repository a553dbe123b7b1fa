#include "stage_change_gatherer.h"

#include <utility>
#include <vector>

#include <pxr/base/tf/weakPtr.h>
#include <pxr/usd/usdGeom/xformable.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

StageChangeGatherer::StageChangeGatherer(const UsdStageRefPtr& stage, Callbacks callbacks)
    : m_callbacks(std::move(callbacks)), m_cameras(stage)
{
    m_key = TfNotice::Register(TfCreateWeakPtr(this), &StageChangeGatherer::_onObjectsChanged,
                               UsdStageWeakPtr(stage));
}

StageChangeGatherer::~StageChangeGatherer() { TfNotice::Revoke(m_key); }

void StageChangeGatherer::beginTask()
{
    std::lock_guard lock(m_mutex);
    m_taskRuns = true;
}

std::optional<StageChangesEvent> StageChangeGatherer::endTask()
{
    std::lock_guard lock(m_mutex);
    m_taskRuns = false;
    if (m_gathered.event.isEmpty()) return std::nullopt;
    return std::exchange(m_gathered, Gathered()).event;
}

void StageChangeGatherer::_onObjectsChanged(const UsdNotice::ObjectsChanged& notice)
{
    bool outsideTask = false;
    {
        std::lock_guard lock(m_mutex);
        outsideTask = !m_taskRuns;
        StageChangesEvent& event = m_gathered.event;
        for (const SdfPath& path : notice.GetResyncedPaths()) {
            if (!path.IsPropertyPath())
                event.resyncedPrimPaths.insert(path);
            else if (m_gathered.listedResynced.insert(path).second)
                event.resyncedPropertyPaths.push_back(path);
        }
        for (const SdfPath& path : notice.GetChangedInfoOnlyPaths()) {
            if (!path.IsPropertyPath())
                event.infoChangedPrimPaths.insert(path);
            else if (m_gathered.listedChanged.insert(path).second)
                event.changedPropertyPaths.push_back(path);
        }
    }
    m_callbacks.onChange();
    if (outsideTask) m_callbacks.onChangeOutsideTask();
}

void StageChangeGatherer::addCameras(StageChangesEvent& event)
{
    if (!event.resyncedPrimPaths.empty()) {
        const std::vector<SdfPath> recomposed(event.resyncedPrimPaths.begin(), event.resyncedPrimPaths.end());
        for (SdfPath& camera : m_cameras.recompose(recomposed))
            event.resyncedPrimPaths.insert(std::move(camera));
    }
    std::unordered_set<SdfPath, SdfPath::Hash> moved;
    for (const auto* list : {&event.changedPropertyPaths, &event.resyncedPropertyPaths})
        for (const SdfPath& property : *list)
            if (UsdGeomXformable::IsTransformationAffectedByAttrNamed(property.GetNameToken()))
                moved.insert(property.GetPrimPath());
    for (const SdfPath& prim : moved)
        for (SdfPath& camera : m_cameras.camerasBeneath(prim))
            event.infoChangedPrimPaths.insert(std::move(camera));
}

} // namespace vesk::framework::usd_document
