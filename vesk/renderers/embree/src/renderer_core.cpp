#include "renderer_core.h"

#include "frame_job.h"

#include <vesk/base/error_handling.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

using framework::hydra_renderer::FrameRenderedEvent;
using framework::usd_document::UsdDocument;

RendererCore::RendererCore(unsigned int viewportId, std::function<bool(int, float, bool)> progress)
    : callbacks(std::move(progress)),
      m_viewportId(viewportId),
      m_built(std::make_shared<BuiltScenes>(std::make_shared<Device>()))
{}

RendererCore::~RendererCore() = default;

void RendererCore::setDocument(const std::shared_ptr<UsdDocument>& document)
{
    auto scene = std::make_shared<DocumentScene>(document, m_built);
    scene->connect();
    if (const auto former = state.exchangeDocument(std::move(scene))) former->disconnect();
}

void RendererCore::addFrame(std::shared_ptr<FrameJob> job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(job));
    }
    _startNext();
}

void RendererCore::_startNext()
{
    std::shared_ptr<FrameJob> next;
    {
        const std::lock_guard lock(m_mutex);
        if (m_drawn || m_waiting.empty() || m_closed) return;
        m_drawn = m_waiting.front();
        m_waiting.pop_front();
        next = m_drawn;
    }
    next->start();
}

void RendererCore::frameEnded(const FrameJob* job)
{
    std::shared_ptr<FrameJob> ended; // destroyed after the lock
    {
        const std::lock_guard lock(m_mutex);
        if (m_drawn.get() != job) return;
        ended = std::move(m_drawn);
        m_drawn.reset();
    }
    _startNext();
}

bool RendererCore::frameIsWaiting() const
{
    const std::lock_guard lock(m_mutex);
    return !m_waiting.empty();
}

void RendererCore::addRequest(const std::shared_ptr<PendingRequest>& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.insert(request);
}

void RendererCore::requestEnded(const std::shared_ptr<PendingRequest>& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.erase(request);
}

base::Future<PulledScene> RendererCore::pull(const RendererState::Copy& copy)
{
    ExtractionRequest request;
    request.time = copy.settings.time;
    request.proxyPurpose = copy.settings.proxyPurpose;
    request.sceneMaterials = copy.settings.sceneMaterials;
    const SdfPath* path = std::get_if<SdfPath>(&copy.settings.camera);
    return copy.document->pull(request, path ? *path : SdfPath());
}

GfCamera RendererCore::cameraOf(const FrameSettings& settings, const PulledScene& pulled)
{
    if (const GfCamera* camera = std::get_if<GfCamera>(&settings.camera)) return *camera;
    const std::lock_guard lock(m_mutex);
    if (pulled.camera) m_lastCamera = pulled.camera;
    if (m_lastCamera) return *m_lastCamera;
    const std::string text = "there is no camera at '" + std::get<SdfPath>(settings.camera).GetString() + "'";
    throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument), text.c_str());
}

void RendererCore::announce(const std::shared_ptr<DocumentScene>& scene, std::uint64_t frameIndex,
                            bool converged)
{
    if (m_closed) return;
    // The bus is the locked document's own: the one that was given at creation dies with its document.
    if (const std::shared_ptr<UsdDocument> document = scene->document()) {
        FrameRenderedEvent event;
        event.documentId = document->getId();
        event.viewportId = m_viewportId;
        event.frameIndex = frameIndex;
        event.converged = converged;
        document->getEventBus()->sendEvent(event);
    }
    callbacks.afterRender(converged);
}

void RendererCore::close()
{
    std::deque<std::shared_ptr<FrameJob>> frames;
    std::set<std::shared_ptr<PendingRequest>> requests;
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        frames.swap(m_waiting);
        requests.swap(m_requests);
        if (m_drawn) frames.push_front(std::move(m_drawn));
        m_drawn.reset();
    }
    for (const auto& frame : frames) {
        frame->abandon();
    }
    for (const auto& request : requests) {
        request->abandon();
    }
    if (const auto scene = state.exchangeDocument(nullptr)) scene->disconnect();
    callbacks.close();
}

} // namespace vesk::renderers::embree
