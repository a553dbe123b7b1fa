#include "frame_job.h"

namespace vesk::renderers::embree {

using framework::hydra_renderer::HydraRenderJobResult;
using framework::hydra_renderer::RenderParameters;

namespace {

constexpr int kMostRestarts = 16; // a camera that never rests must not keep a frame for ever

std::vector<Output> outputsOf(const RenderParameters& parameters)
{
    std::vector<Output> outputs;
    for (const auto& aov : parameters.aovs) {
        if (const std::optional<Output> output = outputOf(aov)) outputs.push_back(*output);
    }
    return outputs;
}

} // namespace

WindowFrame::WindowFrame(std::shared_ptr<RendererCore> core, RenderParameters parameters, bool refines)
    : FrameJob(std::move(core)), m_parameters(std::move(parameters)), m_refines(refines)
{}

void WindowFrame::abandon() { m_promise.setError(base::detail::brokenPromise()); }
void WindowFrame::_fail(std::exception_ptr error) { m_promise.setError(std::move(error)); }

RendererState::Copy WindowFrame::_settings()
{
    RendererState::Copy copy = core()->state.copy();
    if (m_parameters.samples > 0) copy.settings.samples = m_parameters.samples;
    return copy;
}

FilmParts WindowFrame::_wantedParts(const FrameSettings& settings) const
{
    return partsFor(outputsOf(m_parameters), settings);
}

bool WindowFrame::_mayBeginCoarse() const { return m_refines; }

bool WindowFrame::_isOutdated() const
{
    if (!m_refines) return false;
    if (core()->frameIsWaiting()) return true;
    return m_restarts < kMostRestarts && core()->state.serial() != settingsCopy().serial;
}

bool WindowFrame::_onImage(bool converged)
{
    m_frameIndex = core()->nextFrameIndex();
    // Of a refinement only the first images, coarse and whole, and the last one are announced.
    if (samplesDone() <= 1 || converged) core()->announce(settingsCopy().document, m_frameIndex, converged);
    return _goesOn();
}

bool WindowFrame::_goesOn()
{
    const bool isStale = core()->state.serial() != settingsCopy().serial;
    if (!m_parameters.untilConverged || !m_refines || core()->frameIsWaiting()) return false;
    if (isStale && m_restarts < kMostRestarts) {
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
    for (const auto& aov : m_parameters.aovs) {
        if (const auto output = outputOf(aov)) result.aovs.emplace_back(aov, readOutput(*output));
    }
    m_promise.setValue(std::move(result));
}

} // namespace vesk::renderers::embree
