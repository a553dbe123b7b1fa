#include <vesk/renderers/recording/recording_log.h>

#include "recording_log_impl.h"

namespace vesk::renderers::recording {

using framework::hydra_renderer::HydraRenderJobResult;
using framework::hydra_renderer::PickingResult;

namespace {

constexpr std::array<const char*, kOperationCount> kNames = {"create",
                                                             "destroy",
                                                             "setDocument",
                                                             "switchRenderer",
                                                             "setPresentationModeEnabled",
                                                             "setRenderSize",
                                                             "setCamera",
                                                             "setCameraFitPolicy",
                                                             "setLighting",
                                                             "setTiledRenderWindow",
                                                             "setCurrentTime",
                                                             "setRenderProxyGeometry",
                                                             "setRenderSelectionVisualization",
                                                             "setSelectionPaths",
                                                             "setSelectionColor",
                                                             "setHighlightedPaths",
                                                             "setHighlightColor",
                                                             "setGridAboveColor",
                                                             "setGridBelowColor",
                                                             "setGridThickness",
                                                             "setGridEnabled",
                                                             "setOutlineThickness",
                                                             "setClearColor",
                                                             "setColorCorrectionMode",
                                                             "setDrawMode",
                                                             "setPostProcessingDebugMode",
                                                             "setAfterRenderCallback",
                                                             "singlePointPicking",
                                                             "colorPicking",
                                                             "captureFrame",
                                                             "captureFrames",
                                                             "renderFrame"};

// The oldest promise of a kind is taken under the lock and ended without it: ending one calls others.
template <class T, class End>
bool endOldest(std::mutex& mutex, OpenFutures<T>& open, End end)
{
    std::optional<base::Promise<T>> promise;
    {
        const std::lock_guard lock(mutex);
        promise = open.takeOldest();
    }
    if (!promise) return false;
    end(*promise);
    return true;
}

} // namespace

const char* operationName(Operation operation) { return kNames.at(static_cast<std::size_t>(operation)); }

void RecordingLog::Impl::keep(Operation operation, unsigned int viewportId,
                              std::vector<RecordedArgument> arguments)
{
    RecordedCall call;
    call.operation = operation;
    call.op = operationName(operation);
    call.arguments = std::move(arguments);
    call.thread = std::this_thread::get_id();
    call.viewportId = viewportId;
    std::function<void(const RecordedCall&)> observe;
    {
        const std::lock_guard lock(mutex);
        call.sequence = sequence->fetch_add(1);
        calls.push_back(call);
        observe = observer;
    }
    if (observe) observe(call);
}

RecordingLog::RecordingLog() : m_impl(std::make_unique<Impl>()) {}
RecordingLog::~RecordingLog() = default;

std::vector<RecordedCall> RecordingLog::calls() const
{
    const std::lock_guard lock(m_impl->mutex);
    return m_impl->calls;
}

std::vector<RecordedCall> RecordingLog::takeCalls()
{
    std::vector<RecordedCall> taken;
    const std::lock_guard lock(m_impl->mutex);
    taken.swap(m_impl->calls);
    return taken;
}

void RecordingLog::clear() { takeCalls(); }

std::vector<std::string> RecordingLog::operations() const
{
    std::vector<std::string> names;
    const std::lock_guard lock(m_impl->mutex);
    for (const RecordedCall& call : m_impl->calls) {
        names.emplace_back(call.op);
    }
    return names;
}

std::uint64_t RecordingLog::count(Operation operation) const
{
    return m_impl->counts.at(static_cast<std::size_t>(operation)).load(std::memory_order_relaxed);
}

void RecordingLog::setCountOnly(bool enabled) { m_impl->countOnly = enabled; }

void RecordingLog::setSequence(std::shared_ptr<std::atomic<std::uint64_t>> sequence)
{
    const std::lock_guard lock(m_impl->mutex);
    if (sequence) m_impl->sequence = std::move(sequence);
}

void RecordingLog::setObserver(std::function<void(const RecordedCall&)> observer)
{
    std::function<void(const RecordedCall&)> replaced = std::move(observer); // destroyed after the lock
    const std::lock_guard lock(m_impl->mutex);
    std::swap(m_impl->observer, replaced);
}

void RecordingLog::setHandFed(bool enabled) { m_impl->handFed = enabled; }

bool RecordingLog::answerPick(const PickingResult& result)
{
    return endOldest(m_impl->mutex, m_impl->picks, [&](auto& promise) { promise.setValue(result); });
}
bool RecordingLog::failPick(std::exception_ptr error)
{
    return endOldest(m_impl->mutex, m_impl->picks, [&](auto& promise) { promise.setError(error); });
}
bool RecordingLog::answerColorPick(const PXR_NS::GfVec4f& color)
{
    return endOldest(m_impl->mutex, m_impl->colorPicks, [&](auto& promise) { promise.setValue(color); });
}
bool RecordingLog::failColorPick(std::exception_ptr error)
{
    return endOldest(m_impl->mutex, m_impl->colorPicks, [&](auto& promise) { promise.setError(error); });
}
bool RecordingLog::answerCapture()
{
    return endOldest(m_impl->mutex, m_impl->captures, [](auto& promise) { promise.setValue(); });
}
bool RecordingLog::failCapture(std::exception_ptr error)
{
    return endOldest(m_impl->mutex, m_impl->captures, [&](auto& promise) { promise.setError(error); });
}
bool RecordingLog::answerFrame(const HydraRenderJobResult& result)
{
    return endOldest(m_impl->mutex, m_impl->frames, [&](auto& promise) { promise.setValue(result); });
}
bool RecordingLog::failFrame(std::exception_ptr error)
{
    return endOldest(m_impl->mutex, m_impl->frames, [&](auto& promise) { promise.setError(error); });
}

std::size_t RecordingLog::openCount() const
{
    const std::lock_guard lock(m_impl->mutex);
    return m_impl->picks.size() + m_impl->colorPicks.size() + m_impl->captures.size() + m_impl->frames.size();
}

bool RecordingLog::callAfterRender(bool converged)
{
    std::function<void(bool)> callback;
    {
        const std::lock_guard lock(m_impl->mutex);
        callback = m_impl->afterRender;
    }
    if (callback) callback(converged);
    return static_cast<bool>(callback);
}

} // namespace vesk::renderers::recording
