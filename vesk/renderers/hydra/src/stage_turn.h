#pragma once

#include "draw_thread.h"

#include <vesk/base/future.h>
#include <vesk/framework/usd_document/usd_document.h>

#include <condition_variable>
#include <memory>
#include <mutex>

namespace vesk::renderers::hydra {

/// The drawing thread's turn with a document's stage: while it lasts, the document's task thread waits, so
/// nobody edits what is read. It ends by `end()`, or when it is destroyed. Thread: any.
class StageTurn
{
public:
    explicit StageTurn(PXR_NS::UsdStageRefPtr stage) : m_stage(std::move(stage)) {}

    /// Only until `end()`.
    const PXR_NS::UsdStageRefPtr& stage() const { return m_stage; }

    void end()
    {
        const std::lock_guard lock(m_mutex);
        m_stage.Reset();
        m_ended = true;
        m_changed.notify_all();
    }

    void waitForEnd()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_ended; });
    }

private:
    PXR_NS::UsdStageRefPtr m_stage;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ended = false;
};

/// Ends a turn however the work that held it ends, also by never running.
class TurnGuard
{
public:
    explicit TurnGuard(std::shared_ptr<StageTurn> turn) : m_turn(std::move(turn)) {}
    ~TurnGuard()
    {
        if (m_turn) m_turn->end();
    }
    TurnGuard(TurnGuard&&) = default;
    TurnGuard& operator=(TurnGuard&&) = delete;
    StageTurn& operator*() const { return *m_turn; }

private:
    std::shared_ptr<StageTurn> m_turn;
};

/// Queues a read of a document; in its turn `work(StageTurn&)` runs on the drawing thread. The task ends with
/// the turn, the returned future as the task does: it fails where the document dropped the task. What `work`
/// has to tell, it tells itself. Thread: any.
template <class F>
base::Future<void> takeStageTurn(framework::usd_document::UsdDocument& document, const char* label,
                                 base::Priority priority, F work)
{
    return document.read(label, [priority, work = std::move(work)](
                                    const framework::usd_document::DocumentExecContext& context) mutable {
        auto turn = std::make_shared<StageTurn>(context.stage());
        drawThread(priority)->post(
            base::Work([guard = TurnGuard(turn), work = std::move(work)]() mutable { work(*guard); }));
        turn->waitForEnd();
    });
}

} // namespace vesk::renderers::hydra
