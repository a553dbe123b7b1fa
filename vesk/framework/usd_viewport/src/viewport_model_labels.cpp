#include <vesk/base/undo_label_registry.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

// The undo labels, in one file so that they are registered in this order.
namespace vesk::framework::usd_viewport {

namespace {

std::string registerLabel(const char* key, const char* displayText)
{
    return vesk::base::UndoLabelRegistry::getInstance().registerUndoLabel(key, displayText);
}

} // namespace

const std::string ViewportModel::m_cameraAdjustUpDirectionUndoLabel =
    registerLabel("cameraAdjustUpDirection", "camera adjust up");
const std::string ViewportModel::m_cameraCopyFromPathUndoLabel =
    registerLabel("cameraCopyFromPath", "camera copy from path");
const std::string ViewportModel::m_cameraFrameBackViewUndoLabel =
    registerLabel("cameraFrameBackView", "frame back view");
const std::string ViewportModel::m_cameraFrameBottomViewUndoLabel =
    registerLabel("cameraFrameBottomView", "frame bottom view");
const std::string ViewportModel::m_cameraFrameFrontViewUndoLabel =
    registerLabel("cameraFrameFrontView", "frame front view");
const std::string ViewportModel::m_cameraFrameLeftViewUndoLabel =
    registerLabel("cameraFrameLeftView", "frame left view");
const std::string ViewportModel::m_cameraFrameRightViewUndoLabel =
    registerLabel("cameraFrameRightView", "frame right view");
const std::string ViewportModel::m_cameraFrameSceneUndoLabel =
    registerLabel("cameraFrameScene", "frame scene");
const std::string ViewportModel::m_cameraFrameTopViewUndoLabel =
    registerLabel("cameraFrameTopView", "frame top view");
const std::string ViewportModel::m_cameraMatchPerspectiveAndFrameSceneUndoLabel =
    registerLabel("cameraMatchPerspectiveAndFrameScene", "match perspective");
const std::string ViewportModel::m_cameraMoveUndoLabel = registerLabel("cameraMove", "camera move");
const std::string ViewportModel::m_cameraOrbitUndoLabel = registerLabel("cameraOrbit", "camera orbit");
const std::string ViewportModel::m_cameraPanUndoLabel = registerLabel("cameraPan", "camera pan");
const std::string ViewportModel::m_cameraResetViewUndoLabel = registerLabel("cameraResetView", "reset view");
const std::string ViewportModel::m_cameraRotateUndoLabel = registerLabel("cameraRotate", "camera rotate");
const std::string ViewportModel::m_cameraSetBlurAmountUndoLabel =
    registerLabel("cameraSetBlurAmount", "set blur amount");
const std::string ViewportModel::m_cameraSetDepthOfFieldEnabledUndoLabel =
    registerLabel("cameraSetDepthOfFieldEnabled", "set depth of field enabled");
const std::string ViewportModel::m_cameraSetFStopUndoLabel = registerLabel("cameraSetFStop", "set fstop");
const std::string ViewportModel::m_cameraSetFocalLengthUndoLabel =
    registerLabel("cameraSetFocalLength", "set focal length");
const std::string ViewportModel::m_cameraSetFocusDistanceUndoLabel =
    registerLabel("cameraSetFocusDistance", "set focus distance");
const std::string ViewportModel::m_cameraSetProjectionUndoLabel =
    registerLabel("cameraSetProjection", "set projection");
const std::string ViewportModel::m_cameraSetVerticalFOVUndoLabel =
    registerLabel("cameraSetVerticalFOV", "set field of view");
const std::string ViewportModel::m_cameraUpdateUndoLabel = registerLabel("cameraUpdate", "camera update");
const std::string ViewportModel::m_cameraZoomUndoLabel = registerLabel("cameraZoom", "camera zoom");
const std::string ViewportModel::m_matchEnvironmentLightUndoLabel =
    registerLabel("matchEnvironmentLight", "match environment light");

} // namespace vesk::framework::usd_viewport
