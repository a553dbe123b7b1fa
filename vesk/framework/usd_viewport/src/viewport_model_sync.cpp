#include "life_token.h"
#include "owned_lock.h"
#include "viewport_tasks.h"

#include <vesk/base/sync_point.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/viewport_model.h>
#include <vesk/usd/utils/stage_camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

// How a new camera is accepted and handed on: to the renderer, or to the scene camera that is followed.
namespace vesk::framework::usd_viewport {

using vesk::base::Future;
using vesk::framework::usd_document::TaskType;
using vesk::framework::usd_document::UsdDocument;

void ViewportModel::setGfCamera(const GfCamera& camera, const std::string& undoLabel)
{
    _setGfCamera(TfWeakPtr<UsdStage>(), camera, undoLabel);
}

void ViewportModel::setViewportCamera(const TfWeakPtr<UsdStage>& stage, const GfCamera& camera)
{
    if (camera != getViewportCamera()) _setGfCamera(stage, camera, std::string());
}

// Keeps the camera as the viewport's and returns it with a focus distance that can be used.
GfCamera ViewportModel::_focusedCamera(const GfCamera& camera)
{
    GfCamera focused = camera;
    _storeCamera(focused);
    VESK_SYNC_POINT("camera.stored");
    const float given = focused.GetFocusDistance();
    checkGfCameraFocusDistance(focused);
    // Rarely: most cameras have a focus that the check leaves alone.
    if (focused.GetFocusDistance() != given) _storeCamera(focused);
    return focused;
}

void ViewportModel::_setGfCamera(const TfWeakPtr<UsdStage>& stage, const GfCamera& camera,
                                 const std::string& undoLabel)
{
    const GfCamera focused = _focusedCamera(camera);
    VESK_SYNC_POINT("bracket.look");
    if (m_cameraInteractionActive) {
        VESK_SYNC_POINT("bracket.mark");
        // A mark that stands needs no second store, which would cost a fence in every gesture of a drag.
        if (!m_cameraChangedDuringInteraction) m_cameraChangedDuringInteraction = true;
    }
    _setRendererGfCamera(stage, focused, undoLabel);
}

void ViewportModel::_setRendererGfCamera(const TfWeakPtr<UsdStage>& stage, const GfCamera& camera,
                                         const std::string& undoLabel)
{
    const SdfPath path = _activeCameraPath();
    if (path.IsEmpty()) {
        m_renderer->setCamera(camera);
        notifyCameraChanged();
        return;
    }
    const auto write = [this, path](const UsdDocument::ExecContext& context) {
        ViewportTasks(*this).writeCamera(context, path);
    };
    // These die after the lock is released: they may be the last to hold a document or a stage.
    std::shared_ptr<UsdDocument> document;
    UsdStageRefPtr directStage;
    Future<void> written;
    {
        const OwnedLock lock(m_cameraMutex);
        m_interactionCamera = camera;
        if (m_interactionCameraValid) return;
        directStage = TfCreateRefPtrFromProtectedWeakPtr(stage);
        if (directStage) {
            vesk::usd::utils::setGfCameraForCameraPath(stage, path, camera, kDefaultTime);
            notifyCameraChanged();
            return;
        }
        if (m_cameraInteractionActive) m_interactionCameraValid = true;
        VESK_SYNC_POINT("camera.post");
        document = _lockDocument();
        if (!document) return;
        const std::string& label = undoLabel.empty() ? m_cameraUpdateUndoLabel : undoLabel;
        written = document->_exec(whileAlive(m_life, write), TaskType::Edit, label, _editTarget());
    }
    written.detach();
}

} // namespace vesk::framework::usd_viewport
