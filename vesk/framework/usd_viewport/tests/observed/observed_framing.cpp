// The utilities of framing and of lighting that this program has in place of the libraries'; see
// observed_utils.cpp.
#include "observed_utils.h"

#include <vesk/usd/hydra_renderer/lighting.h>
#include <vesk/usd/utils/bounds_utils.h>
#include <vesk/usd/utils/camera_utils.h>
#include <vesk/usd/utils/stage_camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

using vesk::base::result::Result;
using vesk::framework::usd_viewport::tests::ObservedUtils;
using vesk::framework::usd_viewport::tests::observedUtils;
using vesk::framework::usd_viewport::tests::UtilityCall;

namespace vesk::usd::utils {

GfRange3f getSubSceneBounds(const TfWeakPtr<UsdStage>& stage, const std::vector<SdfPath>& paths,
                            bool proxyGeometry, UsdGeomBBoxCache* cache)
{
    UtilityCall call("getSubSceneBounds");
    call.stage = stage;
    call.paths = paths;
    call.proxyGeometry = proxyGeometry;
    call.cache = cache;
    observedUtils().record(call);
    return observedUtils().partBounds;
}

float getDistanceToCenter(const GfRange3f& range, ProjectionType projection, float fieldOfView, float factor)
{
    UtilityCall call("getDistanceToCenter");
    call.bounds = range;
    call.projection = projection;
    call.fieldOfView = fieldOfView;
    call.factor = factor;
    observedUtils().record(call);
    return observedUtils().framedDistance;
}

namespace {

UtilityCall framingCall(const char* name, const GfRange3f& range, const GfCamera& current,
                        ProjectionType projection, float fieldOfView, float distanceToCenter, float factor)
{
    UtilityCall call(name);
    call.bounds = range;
    call.camera = current;
    call.projection = projection;
    call.fieldOfView = fieldOfView;
    call.distanceToCenter = distanceToCenter;
    call.factor = factor;
    return call;
}

} // namespace

GfCamera getFramedBBoxGfCamera(const GfRange3f& range, const GfCamera& current, ProjectionType projection,
                               float fieldOfView, float distanceToCenter, float factor)
{
    observedUtils().record(framingCall("getFramedBBoxGfCamera", range, current, projection, fieldOfView,
                                       distanceToCenter, factor));
    return observedUtils().framedCamera;
}

GfCamera getFramedBBoxGfCameraWithDirection(const GfRange3f& range, const GfCamera& current,
                                            const GfVec3d& direction, bool zUp, ProjectionType projection,
                                            float fieldOfView, float distanceToCenter, float factor)
{
    UtilityCall call = framingCall("getFramedBBoxGfCameraWithDirection", range, current, projection,
                                   fieldOfView, distanceToCenter, factor);
    call.direction = direction;
    call.zUp = zUp;
    observedUtils().record(call);
    return observedUtils().framedCamera;
}

Result<bool> stageIsZUp(const TfWeakPtr<UsdStage>& stage)
{
    UtilityCall call("stageIsZUp");
    call.stage = stage;
    observedUtils().record(call);
    if (observedUtils().upAxisError) return *observedUtils().upAxisError;
    return observedUtils().stageZUp;
}

} // namespace vesk::usd::utils

namespace vesk::usd::hydra_renderer {

Result<GlfSimpleMaterial> createDefaultSimpleMaterial()
{
    observedUtils().record(UtilityCall("createDefaultSimpleMaterial"));
    if (observedUtils().materialError) return *observedUtils().materialError;
    return GlfSimpleMaterial();
}

Result<std::vector<GlfSimpleLight>> createDefaultLighting(const std::filesystem::path& domeLightTexture,
                                                          bool domeLightVisible, float rotationDegrees)
{
    UtilityCall call("createDefaultLighting");
    call.path = SdfPath(domeLightTexture.string());
    call.proxyGeometry = domeLightVisible;
    call.factor = rotationDegrees;
    observedUtils().record(call);
    if (observedUtils().lightsError) return *observedUtils().lightsError;
    return std::vector<GlfSimpleLight>(2);
}

} // namespace vesk::usd::hydra_renderer
