#include "life_token.h"
#include "owned_lock.h"
#include "sizes.h"
#include "viewport_tasks.h"

#include <vesk/base/event_bus.h>
#include <vesk/base/logging.h>
#include <vesk/base/sync_point.h>
#include <vesk/framework/usd_document/usd_document.h>
#include <vesk/framework/usd_viewport/errors.h>
#include <vesk/framework/usd_viewport/viewport_model.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_viewport {

using vesk::base::Future;
using vesk::base::error_handling::Exception;
using vesk::base::error_handling::makeErrorCode;
using vesk::framework::hydra_renderer::HWContext;
using vesk::framework::hydra_renderer::HydraRenderer;
using vesk::framework::usd_document::TaskType;
using vesk::framework::usd_document::UsdDocument;
using vesk::usd::utils::Param;
using vesk::usd::utils::ProjectionType;
using Context = UsdDocument::ExecContext;

namespace {

[[noreturn]] void throwError(ErrEnum error) { throw Exception(makeErrorCode(error)); }

} // namespace

unsigned int ViewportModel::s_nextViewportId = 1;

// Life

ViewportModel::ViewportModel(const std::shared_ptr<UsdDocument>& document,
                             const std::shared_ptr<HWContext>& hwContext, const std::string& rendererId,
                             const std::vector<Param<VtValue>>& rendererSettings, const int (&renderSize)[2],
                             const int (&viewportSize)[2], float devicePixelRatio, bool enableSceneMaterials,
                             bool enableColorCorrection, bool enableAsyncRendering,
                             std::function<bool(int, float, bool)> progressCallback,
                             std::function<void(bool)> afterRenderCallback)
    : m_life(std::make_shared<LifeToken>()),
      m_viewportId(s_nextViewportId++),
      m_document(document),
      m_viewportSize{viewportSize[0], viewportSize[1]},
      m_renderSize{renderSize[0], renderSize[1]},
      m_devicePixelRatio(devicePixelRatio)
{
    if (!document) throwError(ErrEnum::InvalidDocument);
    const GfVec2i physicalSize(physicalPixels(m_renderSize[0], devicePixelRatio),
                               physicalPixels(m_renderSize[1], devicePixelRatio));
    m_renderer = HydraRenderer::create(document->getEventBus().get(), document, hwContext, rendererId,
                                       rendererSettings, physicalSize, m_viewportId, enableSceneMaterials,
                                       enableColorCorrection, enableAsyncRendering,
                                       std::move(progressCallback), std::move(afterRenderCallback));
    if (m_renderer) m_renderer->setCameraFitPolicy(m_defaultCameraFitPolicy);
    _subscribe(document);
}

ViewportModel::~ViewportModel()
{
    // A listener of a direct write may destroy the model; who waits for the lock has to get through.
    OwnedLock::release(m_cameraMutex);
    if (const std::shared_ptr<UsdDocument> document = _lockDocument()) _unsubscribe(document);
    VESK_SYNC_POINT("model.unsubscribed");
    m_life->close();
    VESK_SYNC_POINT("model.lifeClosed");
    _releaseFrameWaiters();
}

void ViewportModel::_subscribe(const std::shared_ptr<UsdDocument>& document)
{
    // A document that dies meanwhile lets go of its listeners later than of the last reference to it: then
    // nobody can unsubscribe, and only the token knows that an event is still in the model.
    m_eventListenerId =
        document->getEventBus()->subscribeListener([this, life = m_life](const std::any& event) {
            if (const LifeVisit visit(*life); visit) _handleEvent(event);
        });
}

void ViewportModel::_unsubscribe(const std::shared_ptr<UsdDocument>& document)
{
    document->getEventBus()->unsubscribeListener(m_eventListenerId);
    m_eventListenerId = 0;
}

void ViewportModel::setDocument(const std::shared_ptr<UsdDocument>& document)
{
    const std::shared_ptr<UsdDocument> former = _lockDocument();
    if (former == document) return;
    if (former) _unsubscribe(former);
    m_eventListenerId = 0;
    VESK_SYNC_POINT("model.unsubscribed");
    {
        const std::lock_guard<std::mutex> lock(m_stateMutex);
        m_document = document;
    }
    VESK_SYNC_POINT("model.rebound");
    if (document) _subscribe(document);
    m_renderer->setDocument(document);
    recomputeCachedSceneBounds();
}

unsigned int ViewportModel::viewportId() const { return m_viewportId; }

const std::unique_ptr<HydraRenderer>& ViewportModel::getRenderer() const { return m_renderer; }

void ViewportModel::switchRenderer(const std::string& rendererId, const std::vector<Param<VtValue>>& settings)
{
    if (rendererId == m_rendererId) return;
    m_rendererId = rendererId;
    m_renderer->switchRenderer(m_rendererId, settings);
}

// The bracket

void ViewportModel::beginCameraInteraction()
{
    if (m_cameraInteractionActive) {
        VESK_LOG_WARN("ViewportModel beginCameraInteraction: already active");
        return;
    }
    // In this order: a change that sees the bracket open is never forgotten.
    m_cameraChangedDuringInteraction = false;
    VESK_SYNC_POINT("bracket.open");
    m_cameraInteractionActive = true;
}

void ViewportModel::endCameraInteraction()
{
    if (!m_cameraInteractionActive) {
        VESK_LOG_WARN("ViewportModel endCameraInteraction: already inactive");
        return;
    }
    VESK_SYNC_POINT("bracket.close");
    m_cameraInteractionActive = false;
    VESK_SYNC_POINT("bracket.closed");
    if (m_cameraChangedDuringInteraction) notifyCameraChanged();
}

// Work for the document. The records of a missing document stand here, each on a line of its own.

Future<void> ViewportModel::frameScene(ProjectionType projection, ViewDirection direction,
                                       const std::vector<SdfPath>& paths)
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Framing without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    const auto work = [this, projection, direction, paths](const Context& context) {
        ViewportTasks(*this).frameScene(context, projection, direction, paths);
    };
    return document->_exec(whileAlive(m_life, work), TaskType::Edit, m_cameraFrameSceneUndoLabel,
                           _editTarget());
}

Future<void> ViewportModel::copyCameraFromPath(const std::string& cameraPath, bool updateDistanceToCenter,
                                               const std::string& label)
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Copying camera from path without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    const std::string& undoLabel = label.empty() ? m_cameraCopyFromPathUndoLabel : label;
    const auto work = [this, cameraPath, updateDistanceToCenter, undoLabel](const Context& context) {
        ViewportTasks tasks(*this);
        const std::optional<GfCamera> camera = tasks.readCamera(context, cameraPath);
        if (!camera) {
            VESK_LOG_ERROR("Camera path {} for copying to viewport camera is not a valid UsdGeomCamera",
                           cameraPath);
            throwError(ErrEnum::InvalidCamera);
        }
        tasks.acceptCamera(context, *camera, updateDistanceToCenter, undoLabel);
    };
    return document->_exec(whileAlive(m_life, work), TaskType::Edit, undoLabel, _editTarget());
}

Future<void> ViewportModel::setActiveCameraPath(const std::string& cameraPath)
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_DEBUG("setActiveCameraPath called without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    const auto work = [this, cameraPath](const Context& context) {
        ViewportTasks(*this).setActiveCamera(context, cameraPath);
    };
    return document->_exec(whileAlive(m_life, work), TaskType::Read, "setActiveCameraPath", UsdEditTarget());
}

Future<void> ViewportModel::checkCameraUpAxis()
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Checking up axis without valid document");
        throwError(ErrEnum::InvalidDocument);
    }
    const auto work = [this](const Context& context) { ViewportTasks(*this).checkCameraUpAxis(context); };
    return document->_exec(whileAlive(m_life, work), TaskType::Edit, m_cameraAdjustUpDirectionUndoLabel,
                           _editTarget());
}

Future<GfRange3f> ViewportModel::getSceneBounds()
{
    const std::shared_ptr<UsdDocument> document = _lockDocument();
    if (!document) {
        VESK_LOG_ERROR("Getting scene bounds without valid document");
        return Future<GfRange3f>();
    }
    const auto work = [this](const Context& context) {
        return ViewportTasks(*this).computeSceneBounds(context);
    };
    return document->_exec(whileAlive(m_life, work), TaskType::Read, "computeBBox", UsdEditTarget());
}

void ViewportModel::recomputeCachedSceneBounds()
{
    const Future<GfRange3f> bounds = getSceneBounds();
    if (!bounds.valid()) return;
    const auto apply = [this](const GfRange3f& range) { ViewportTasks(*this).applySceneBounds(range); };
    bounds.then(whileAlive(m_life, apply)).detach();
}

} // namespace vesk::framework::usd_viewport
