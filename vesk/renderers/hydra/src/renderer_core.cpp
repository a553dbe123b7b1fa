#include "renderer_core.h"

#include "frame_job.h"

#include <vesk/base/error_handling.h>
#include <vesk/base/event_bus.h>
#include <vesk/framework/hydra_renderer/frame_rendered_event.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

using framework::hydra_renderer::FrameRenderedEvent;
using framework::usd_document::UsdDocument;

RendererCore::RendererCore(unsigned int viewportId, std::function<bool(int, float, bool)> progress,
                           EngineSetup setup, picture::FrameSettings settings)
    : callbacks(std::move(progress)),
      m_viewportId(viewportId),
      m_settings(std::move(settings)),
      m_setup(std::move(setup))
{}

SettingsCopy RendererCore::copy() const
{
    const std::lock_guard lock(m_mutex);
    return {m_settings, m_complexity, m_serial, m_scene};
}

std::uint64_t RendererCore::serial() const
{
    const std::lock_guard lock(m_mutex);
    return m_serial;
}

void RendererCore::setComplexity(float complexity)
{
    const std::lock_guard lock(m_mutex);
    m_complexity = complexity;
    ++m_serial;
}

void RendererCore::_show(std::shared_ptr<HydraScene> scene)
{
    if (scene) scene->connect();
    {
        const std::lock_guard lock(m_mutex);
        std::swap(m_scene, scene);
        ++m_serial;
    }
    if (scene) scene->disconnect();
}

void RendererCore::setDocument(const std::shared_ptr<UsdDocument>& document)
{
    EngineSetup setup;
    {
        const std::lock_guard lock(m_mutex);
        setup = m_setup;
    }
    _show(std::make_shared<HydraScene>(document, std::move(setup)));
}

void RendererCore::setDelegate(const std::string& rendererId, const std::map<std::string, VtValue>& settings)
{
    std::shared_ptr<HydraScene> former;
    EngineSetup setup;
    {
        const std::lock_guard lock(m_mutex);
        if (m_setup.rendererId == rendererId && m_setup.settings == settings) return;
        m_setup.rendererId = rendererId;
        m_setup.settings = settings;
        setup = m_setup;
        former = m_scene;
    }
    if (former) _show(std::make_shared<HydraScene>(former->document(), std::move(setup)));
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
    // Not from here: a long row of frames that fail at once must not nest.
    base::defaultExecutor(base::Priority::Low)->post(base::Work([self = shared_from_this()] {
        self->_startNext();
    }));
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

GfCamera RendererCore::cameraOf(const picture::FrameSettings& settings, const StageFacts& facts)
{
    if (const auto* camera = std::get_if<GfCamera>(&settings.camera)) return *camera;
    const std::lock_guard lock(m_mutex);
    if (facts.camera) m_lastCamera = facts.camera;
    if (m_lastCamera) return *m_lastCamera;
    const std::string text = "there is no camera at '" + std::get<SdfPath>(settings.camera).GetString() + "'";
    throw base::error_handling::Exception(std::make_error_code(std::errc::invalid_argument), text.c_str());
}

void RendererCore::announce(const HydraScene& scene, std::uint64_t frameIndex, bool converged)
{
    if (m_closed) return;
    // The bus is the locked document's own: the one that was given at creation dies with its document.
    if (const std::shared_ptr<UsdDocument> document = scene.document()) {
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
    for (const auto& frame : frames)
        frame->abandon();
    for (const auto& request : requests)
        request->abandon();
    _show(nullptr);
    callbacks.close();
}

} // namespace vesk::renderers::hydra
