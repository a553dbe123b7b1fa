#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <variant>

#include <pxr/pxr.h>
#include <pxr/usd/usd/editTarget.h>
#include <pxr/usd/usd/stage.h>

#include <vesk/base/event_bus.h>
#include <vesk/framework/usd_document/bbox_cache_guard.h>
#include <vesk/framework/usd_document/usd_document.h>

#include "edit_recorder.h"
#include "stage_change_gatherer.h"
#include "undo_history.h"

namespace vesk::framework::usd_document {

/// The document's insides, shared with its task thread: a task may destroy the document and still be run to
/// its end. Everything but the constructor may be called from any thread.
class DocumentCore : public std::enable_shared_from_this<DocumentCore>
{
public:
    using EditTarget = std::variant<PXR_NS::UsdEditTarget, std::string>;

    struct QueuedTask
    {
        std::unique_ptr<UsdDocument::Task> task;
        TaskType type = TaskType::Read;
        std::string label;
        std::optional<EditTarget> editTarget; ///< Of an edit.
        std::uint64_t group = 0;
        std::string groupLabel;
    };

    DocumentCore(PXR_NS::UsdStageRefPtr stage, const DocumentOptions& options);
    ~DocumentCore();

    /// Starts the task thread, unless the document is manual.
    void start();

    /// As UsdDocument::close().
    void close();
    /// As close(), and lets the task thread go.
    void shutDown();
    bool isClosed() const { return m_closed.load(); }

    void post(QueuedTask task);
    std::size_t dropPending();
    std::size_t pendingCount() const;
    bool runNext();
    /// Ends the edit that runs on this thread, records it and sends its event; a second call does nothing.
    void settleTask();
    std::size_t runPending();
    void waitUntilIdle() const;
    void setTaskObserver(UsdDocument::TaskObserver observer);
    bool isObserved() const { return m_observed; }
    void notifyObserver(const UsdDocument::TaskRecord& record) const;

    void beginUndoGroup(const std::string& label);
    void endUndoGroup();

    /// Takes back (brings back) the newest entry. Thread: task.
    bool undo();
    bool redo();
    UndoHistory& history() { return m_history; }

    UsdDocument::ExecContext makeContext() const;
    const PXR_NS::UsdStageRefPtr& stage() const { return m_stage; }
    const std::string& id() const { return m_id; }
    const std::shared_ptr<base::EventBus>& bus() const { return m_bus; }
    bool isManual() const { return m_manual; }
    std::string uri() const;
    void setUri(const std::string& uri);

private:
    struct UndoGroup
    {
        std::uint64_t id = 0;
        int depth = 0;
        std::string label;
    };

    class Execution;

    void _runThread();
    bool _hasWork() const { return !m_queue.empty() || m_flushRequested; }
    /// Runs the first task, or sends what changed outside tasks. The lock is released meanwhile.
    bool _runOne(std::unique_lock<std::mutex>& lock);
    void _runTask(QueuedTask& queued);
    void _callTask(QueuedTask& queued) noexcept;
    void _sendChanges();
    void _requestFlush();
    void _revert(const UndoEntry& entry, UndoEntry& opposite);
    PXR_NS::UsdEditTarget _resolve(const EditTarget& target) const;
    bool _isTaskThread() const { return m_runner.load() == std::this_thread::get_id(); }

    const PXR_NS::UsdStageRefPtr m_stage;
    const std::string m_id;
    const bool m_manual;
    const std::function<UsdDocument::ExecContext(const UsdDocument::ExecContext&)> m_contextFilter;
    const std::shared_ptr<base::EventBus> m_bus;
    const UsdGeomBBoxCacheGuardWrapper m_bboxCacheGuard;

    UndoHistory m_history;
    EditRecorder m_recorder;
    std::unique_ptr<StageChangeGatherer> m_gatherer;

    mutable std::mutex m_mutex; ///< Guards what follows; never held over code of others.
    mutable std::condition_variable m_workAdded;
    mutable std::condition_variable m_becameIdle;
    std::list<QueuedTask> m_queue; ///< A list: taking it over, as closing does, allocates nothing.
    UndoGroup m_group;
    bool m_running = false;
    bool m_flushRequested = false;
    std::string m_uri;
    std::shared_ptr<const UsdDocument::TaskObserver> m_observer;

    std::atomic<bool> m_observed{false};
    std::atomic<bool> m_closed{false};
    std::atomic<std::thread::id> m_runner{}; ///< Runs a task now.
    Execution* m_execution = nullptr;        ///< Of the task that runs; for that thread alone.
    std::thread m_thread;
};

} // namespace vesk::framework::usd_document
