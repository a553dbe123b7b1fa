#pragma once

#include <vesk/base/future.h>
#include <vesk/framework/hydra_renderer/hydra_render_job_result.h>
#include <vesk/framework/hydra_renderer/picking_result.h>
#include <vesk/renderers/recording/export.h>
#include <vesk/renderers/recording/recorded_call.h>

#include <atomic>
#include <exception>
#include <functional>
#include <memory>

namespace vesk::renderers::recording {

/// What the recording renderers that share it were told, and what they answer.
///
/// By default every pick, capture and frame is answered at once: a miss, black, done. With `setHandFed(true)`
/// the futures stay open until one of the `answer` or `fail` operations ends the oldest of its kind. The log
/// outlives its renderers; a renderer that dies ends its own open futures as "broken promise".
///
///     auto log = std::make_shared<RecordingLog>();
///     registerRecordingRenderer(log);
///     ... // make a viewport on the renderer "recording"
///     EXPECT_EQ(log->calls().back().op, std::string("setCamera"));
///
/// Thread: any, for every operation.
class VESK_RENDERERS_RECORDING_EXPORT RecordingLog
{
public:
    RecordingLog();
    ~RecordingLog();
    RecordingLog(const RecordingLog&) = delete;
    RecordingLog& operator=(const RecordingLog&) = delete;

    // What was called.

    /// All calls since the last `takeCalls` or `clear`, in their order.
    std::vector<RecordedCall> calls() const;

    /// Returns the calls and forgets them.
    std::vector<RecordedCall> takeCalls();
    /// Forgets the calls.
    void clear();

    /// The names of the calls since the last `takeCalls` or `clear`.
    std::vector<std::string> operations() const;

    /// How often an operation was called, also while only counting. `clear` does not reset it.
    std::uint64_t count(Operation operation) const;

    /// With true, calls are counted and not kept: a call then neither allocates nor locks.
    void setCountOnly(bool enabled);

    // Order among several observers.

    /// Shares a counter with other observers: each call takes the next number from it.
    void setSequence(std::shared_ptr<std::atomic<std::uint64_t>> sequence);

    /// Called for each call, on its thread, before the operation returns; may be empty. It may throw: the
    /// exception leaves the operation, as one of a real renderer would. Not called while only counting.
    void setObserver(std::function<void(const RecordedCall&)> observer);

    // Answers.

    /// Answers at once (false) or when an operation below says so (true).
    void setHandFed(bool enabled);

    /// Ends the oldest open pick; false when there is none.
    bool answerPick(const framework::hydra_renderer::PickingResult& result);
    /// Ends the oldest open pick with an error; false when there is none.
    bool failPick(std::exception_ptr error);
    /// Ends the oldest open colour pick; false when there is none.
    bool answerColorPick(const PXR_NS::GfVec4f& color);
    /// Ends the oldest open colour pick with an error; false when there is none.
    bool failColorPick(std::exception_ptr error);
    /// Ends the oldest open capture; false when there is none.
    bool answerCapture();
    /// Ends the oldest open capture with an error; false when there is none.
    bool failCapture(std::exception_ptr error);
    /// Ends the oldest open frame; false when there is none.
    bool answerFrame(const framework::hydra_renderer::HydraRenderJobResult& result);
    /// Ends the oldest open frame with an error; false when there is none.
    bool failFrame(std::exception_ptr error);

    /// How many futures are open.
    std::size_t openCount() const;

    /// Calls the callbacks that the newest renderer was given, as one that draws would; false without one.
    bool callAfterRender(bool converged);

private:
    friend class RecordingRenderer;
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// The name of an operation.
VESK_RENDERERS_RECORDING_EXPORT const char* operationName(Operation operation);

} // namespace vesk::renderers::recording
