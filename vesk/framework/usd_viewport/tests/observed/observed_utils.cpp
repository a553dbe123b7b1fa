// The definitions below stand before those of the shared libraries when the program is loaded: calls that the
// viewport library makes to its collaborators arrive here.
#include "observed_utils.h"

#include <vesk/base/undo_label_registry.h>
#include <vesk/usd/utils/bounds_utils.h>
#include <vesk/usd/utils/camera_utils.h>
#include <vesk/usd/utils/stage_camera_utils.h>
#include <vesk/usd/utils/utils_error.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport::tests {

ObservedUtils& observedUtils()
{
    static ObservedUtils utils;
    return utils;
}

std::vector<std::pair<std::string, std::string>>& registeredLabels()
{
    static std::vector<std::pair<std::string, std::string>> labels;
    return labels;
}

std::vector<UtilityCall> ObservedUtils::take()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_calls, {});
}

void ObservedUtils::record(UtilityCall call)
{
    if (onEntry) onEntry(call);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (timeline) timeline->push_back("utils " + call.name);
    m_calls.push_back(std::move(call));
}

namespace {

void tell(UtilityCall call, GfCamera& camera)
{
    call.camera = camera;
    observedUtils().record(call);
    if (observedUtils().onCall) observedUtils().onCall(call, camera);
}

} // namespace

} // namespace vesk::framework::usd_viewport::tests

namespace vesk::base {

std::string UndoLabelRegistry::registerUndoLabel(const std::string& key,
                                                 const std::string& displayText) noexcept
{
    framework::usd_viewport::tests::registeredLabels().emplace_back(key, displayText);
    return "<" + displayText + ">";
}

} // namespace vesk::base

namespace vesk::usd::utils {

using framework::usd_viewport::tests::observedUtils;
using framework::usd_viewport::tests::tell;
using framework::usd_viewport::tests::UtilityCall;
using vesk::base::error_handling::makeErrorCode;
using vesk::base::result::Result;

void checkGfCameraFocusDistance(GfCamera& camera, const GfRange3f& bounds)
{
    UtilityCall call("checkGfCameraFocusDistance");
    call.bounds = bounds;
    tell(call, camera);
}

void updateGfCameraNearFar(GfCamera& camera, bool zUp, float distanceToCenter, float distance,
                           const GfRange3f& bounds)
{
    UtilityCall call("updateGfCameraNearFar");
    call.zUp = zUp;
    call.distanceToCenter = distanceToCenter;
    call.distance = distance;
    call.bounds = bounds;
    tell(call, camera);
}

float getGfCameraDistanceToCenter(const GfCamera& camera, const GfRange3f& bounds)
{
    UtilityCall call("getGfCameraDistanceToCenter");
    call.bounds = bounds;
    GfCamera copy = camera;
    tell(call, copy);
    return observedUtils().distanceToCenter;
}

void setGfCameraForCameraPath(const TfWeakPtr<UsdStage>& stage, const SdfPath& path, const GfCamera& camera,
                              double time)
{
    UtilityCall call("setGfCameraForCameraPath");
    call.stage = stage;
    call.path = path;
    call.time = time;
    GfCamera copy = camera;
    tell(call, copy);
}

Result<GfCamera> getGfCameraFromCameraPath(const TfWeakPtr<UsdStage>& stage, const SdfPath& path, double time)
{
    UtilityCall call("getGfCameraFromCameraPath");
    call.stage = stage;
    call.path = path;
    call.time = time;
    observedUtils().record(call);
    if (!observedUtils().sceneCamera) return makeErrorCode(UtilsError::InvalidCameraPrim);
    return *observedUtils().sceneCamera;
}

Result<GfRange3f> computeAlignedGeometryBounds(const TfWeakPtr<UsdStage>& stage, const SdfPath& root,
                                               UsdTimeCode time, bool proxyGeometry, UsdGeomBBoxCache* cache)
{
    UtilityCall call("computeAlignedGeometryBounds");
    call.stage = stage;
    call.path = root;
    call.time = time.GetValue();
    call.proxyGeometry = proxyGeometry;
    call.cache = cache;
    observedUtils().record(call);
    if (observedUtils().boundsError) return *observedUtils().boundsError;
    return observedUtils().sceneBounds;
}

} // namespace vesk::usd::utils
