#include "drawing.h"
#include "frame_job.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

using framework::hydra_renderer::AovCaptureRequest;

CaptureFrame::CaptureFrame(std::shared_ptr<RendererCore> core, RendererState::Copy copy,
                           std::vector<AovCaptureRequest> requests)
    : FrameJob(std::move(core)), m_captured(std::move(copy)), m_requests(std::move(requests))
{
    int samples = 0;
    for (const AovCaptureRequest& request : m_requests) {
        samples = std::max(samples, request.samples);
    }
    if (samples > 0) m_captured.settings.samples = samples;
}

void CaptureFrame::abandon() { m_promise.setError(base::detail::brokenPromise()); }
void CaptureFrame::_fail(std::exception_ptr error) { m_promise.setError(std::move(error)); }

RendererState::Copy CaptureFrame::_settings()
{
    for (const AovCaptureRequest& request : m_requests) {
        checkTarget(request.path, request.aov);
    }
    return m_captured;
}

FilmParts CaptureFrame::_wantedParts(const FrameSettings& settings) const
{
    std::vector<Output> outputs;
    for (const AovCaptureRequest& request : m_requests)
        outputs.push_back(*outputOf(request.aov));
    return partsFor(outputs, settings);
}

bool CaptureFrame::_onImage(bool) { return true; }

void CaptureFrame::_finish(bool converged)
{
    _write();
    core()->announce(settingsCopy().document, core()->nextFrameIndex(), converged);
    m_promise.setValue();
}

void CaptureFrame::_write()
{
    const std::shared_ptr<const Film> film = finishedFilm();
    for (const AovCaptureRequest& request : m_requests) {
        FrameSettings settings = frameSettings();
        if (request.clearColor) settings.clearColor = *request.clearColor;
        if (core()->isClosed()) return;
        writeImage(request.path, *film, settings, *outputOf(request.aov));
    }
}

} // namespace vesk::renderers::embree
