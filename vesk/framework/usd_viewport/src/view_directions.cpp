#include "view_directions.h"

#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

FramedView framedView(ViewDirection direction, bool zUp)
{
    using namespace vesk::usd::utils;
    using Model = ViewportModel;
    switch (direction) {
    case ViewDirection::Front:
        return {GfVec3d(frontViewDirection(zUp)), Model::m_cameraFrameFrontViewUndoLabel};
    case ViewDirection::Back:
        return {GfVec3d(-frontViewDirection(zUp)), Model::m_cameraFrameBackViewUndoLabel};
    case ViewDirection::Left:
        return {GfVec3d(-rightViewDirection(zUp)), Model::m_cameraFrameLeftViewUndoLabel};
    case ViewDirection::Right:
        return {GfVec3d(rightViewDirection(zUp)), Model::m_cameraFrameRightViewUndoLabel};
    case ViewDirection::Top:
        return {GfVec3d(topViewDirection(zUp)), Model::m_cameraFrameTopViewUndoLabel};
    case ViewDirection::Bottom:
        return {GfVec3d(-topViewDirection(zUp)), Model::m_cameraFrameBottomViewUndoLabel};
    case ViewDirection::ThreeQuarters:
        return {GfVec3d(threeQuartersViewDirection(zUp)), Model::m_cameraResetViewUndoLabel};
    case ViewDirection::Current:
        break;
    }
    return {std::nullopt, Model::m_cameraFrameSceneUndoLabel};
}

} // namespace vesk::framework::usd_viewport
