#include "frame_job.h"

#include <vesk/renderers/picture/image_io.h>

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::hydra {

using framework::hydra_renderer::AovCaptureRequest;
using framework::hydra_renderer::HydraRenderJobResult;
using framework::hydra_renderer::RenderParameters;
using picture::Film;
using picture::Output;
using picture::outputOf;

namespace {

constexpr int kMostRestarts = 16; // a camera that never rests must not keep a frame for ever

} // namespace

WindowFrame::WindowFrame(std::shared_ptr<RendererCore> core, RenderParameters parameters, bool refines)
    : FrameJob(std::move(core)), m_parameters(std::move(parameters)), m_refines(refines)
{}

void WindowFrame::abandon() { m_promise.setError(base::detail::brokenPromise()); }
void WindowFrame::_fail(std::exception_ptr error) { m_promise.setError(std::move(error)); }

SettingsCopy WindowFrame::_settings()
{
    SettingsCopy copy = core()->copy();
    if (m_parameters.samples > 0) copy.settings.samples = m_parameters.samples;
    return copy;
}

std::vector<Output> WindowFrame::_outputs() const
{
    std::vector<Output> outputs;
    for (const TfToken& aov : m_parameters.aovs) {
        if (const auto output = outputOf(aov)) outputs.push_back(*output);
    }
    return outputs;
}

bool WindowFrame::_onImage(bool converged)
{
    m_frameIndex = core()->nextFrameIndex();
    // Of a refinement only the first image and the last one are announced.
    if (samplesDone() <= 1 || converged) core()->announce(*settingsCopy().scene, m_frameIndex, converged);
    if (!m_parameters.untilConverged || !m_refines || core()->frameIsWaiting()) return false;
    if (!converged && core()->serial() != settingsCopy().serial && m_restarts < kMostRestarts) {
        ++m_restarts;
        restart();
        return false;
    }
    return true;
}

void WindowFrame::_finish(bool converged)
{
    HydraRenderJobResult result;
    result.frameIndex = m_frameIndex;
    result.converged = converged;
    result.samples = samplesDone();
    result.size = frameSettings().size;
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_begin).count();
    if (!m_parameters.aovs.empty()) {
        const Film film = finishedFilm();
        for (const TfToken& aov : m_parameters.aovs) {
            if (const auto output = outputOf(aov))
                result.aovs.emplace_back(aov, readBuffer(film, frameSettings(), *output));
        }
    }
    m_promise.setValue(std::move(result));
}

CaptureFrame::CaptureFrame(std::shared_ptr<RendererCore> core, SettingsCopy copy,
                           std::vector<AovCaptureRequest> requests)
    : FrameJob(std::move(core)), m_captured(std::move(copy)), m_requests(std::move(requests))
{
    int samples = 0;
    for (const AovCaptureRequest& request : m_requests)
        samples = std::max(samples, request.samples);
    if (samples > 0) m_captured.settings.samples = samples;
}

void CaptureFrame::abandon() { m_promise.setError(base::detail::brokenPromise()); }
void CaptureFrame::_fail(std::exception_ptr error) { m_promise.setError(std::move(error)); }

SettingsCopy CaptureFrame::_settings()
{
    for (const AovCaptureRequest& request : m_requests)
        picture::checkTarget(request.path, request.aov);
    return m_captured;
}

std::vector<Output> CaptureFrame::_outputs() const
{
    std::vector<Output> outputs;
    for (const AovCaptureRequest& request : m_requests)
        outputs.push_back(*outputOf(request.aov));
    return outputs;
}

bool CaptureFrame::_onImage(bool) { return true; }

void CaptureFrame::_finish(bool converged)
{
    const Film film = finishedFilm();
    for (const AovCaptureRequest& request : m_requests) {
        picture::FrameSettings settings = frameSettings();
        if (request.clearColor) settings.clearColor = *request.clearColor;
        if (core()->isClosed()) return;
        writeImage(request.path, film, settings, *outputOf(request.aov));
    }
    core()->announce(*settingsCopy().scene, core()->nextFrameIndex(), converged);
    m_promise.setValue();
}

PixelFrame::PixelFrame(std::shared_ptr<RendererCore> core, SettingsCopy copy, const GfVec2i& pixel,
                       Output output)
    : FrameJob(std::move(core)), m_captured(std::move(copy)), m_pixel(pixel), m_output(output)
{
    m_captured.settings.window = GfVec4i(pixel[0], pixel[1], 1, 1);
}

void PixelFrame::abandon() { m_promise.setError(base::detail::brokenPromise()); }
void PixelFrame::_fail(std::exception_ptr error) { m_promise.setError(std::move(error)); }
SettingsCopy PixelFrame::_settings() { return m_captured; }
std::vector<Output> PixelFrame::_outputs() const { return {m_output}; }
bool PixelFrame::_onImage(bool) { return true; }
void PixelFrame::_ended() { core()->requestEnded(shared_from_this()); }

void PixelFrame::_finish(bool)
{
    const Film film = finishedFilm();
    const picture::OutputPixel pixel =
        readPixel(film, frameSettings(), m_output, film.index(m_pixel[0], m_pixel[1]));
    m_promise.setValue(GfVec4f(pixel.channel[0], pixel.channel[1], pixel.channel[2], pixel.channel[3]));
}

} // namespace vesk::renderers::hydra
