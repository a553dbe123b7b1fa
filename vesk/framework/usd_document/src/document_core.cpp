#include "document_core.h"

#include <exception>
#include <optional>
#include <system_error>
#include <utility>

#include <pxr/base/tf/errorMark.h>
#include <pxr/base/tf/weakPtr.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/usd/editContext.h>

#include <vesk/base/logging.h>
#include <vesk/base/sync_point.h>

#include "stage_errors.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

namespace {

std::string nextId()
{
    static std::atomic<unsigned> counter{0};
    return "document-" + std::to_string(++counter);
}

std::string uriOf(const UsdStageRefPtr& stage)
{
    const SdfLayerHandle root = stage->GetRootLayer();
    return root->GetRealPath().empty() ? root->GetIdentifier() : root->GetRealPath();
}

} // namespace

DocumentCore::DocumentCore(UsdStageRefPtr stage, const DocumentOptions& options)
    : m_stage(std::move(stage)),
      m_id(nextId()),
      m_manual(options.manual),
      m_contextFilter(options.contextFilter),
      m_bus(std::make_shared<base::EventBus>()),
      m_uri(uriOf(m_stage))
{
    // The gatherer is a member: it cannot outlive what its callbacks use.
    m_gatherer = std::make_unique<StageChangeGatherer>(
        m_stage, StageChangeGatherer::Callbacks{[this] { m_bboxCacheGuard.invalidate(); },
                                                [this] { _requestFlush(); }});
}

DocumentCore::~DocumentCore() { m_gatherer.reset(); }

void DocumentCore::start()
{
    if (!m_manual) m_thread = std::thread([core = shared_from_this()] { core->_runThread(); });
}

void DocumentCore::close()
{
    VESK_SYNC_POINT("document.close");
    m_closed = true;
    VESK_SYNC_POINT("document.closed");
    dropPending();
    m_workAdded.notify_all();
    if (!_isTaskThread()) {
        std::unique_lock lock(m_mutex);
        VESK_SYNC_WAIT("document.idle", lock, !m_running);
        m_becameIdle.wait(lock, [this] { return !m_running; });
    }
    m_history.clear();
}

void DocumentCore::shutDown()
{
    close();
    if (!m_thread.joinable()) return;
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else
        m_thread.join();
}

void DocumentCore::post(QueuedTask task)
{
    // Allocates before the lock is taken; a task that is not taken dies after it was released.
    std::list<QueuedTask> posted;
    posted.push_back(std::move(task));
    VESK_SYNC_POINT("document.post");
    {
        std::lock_guard lock(m_mutex);
        if (!m_closed) {
            if (m_group.depth > 0) {
                posted.front().group = m_group.id;
                posted.front().groupLabel = m_group.label;
            }
            m_queue.splice(m_queue.end(), posted);
        }
    }
    m_workAdded.notify_one();
}

std::size_t DocumentCore::dropPending()
{
    std::list<QueuedTask> dropped;
    {
        std::lock_guard lock(m_mutex);
        dropped.swap(m_queue);
        if (!m_running) m_becameIdle.notify_all();
    }
    VESK_SYNC_POINT("document.drop");
    // One after the other: each ends its future, whose continuations may post or close.
    const std::size_t count = dropped.size();
    while (!dropped.empty())
        dropped.pop_front();
    return count;
}

std::size_t DocumentCore::pendingCount() const
{
    std::lock_guard lock(m_mutex);
    return m_queue.size();
}

void DocumentCore::_runThread()
{
    std::unique_lock lock(m_mutex);
    while (!m_closed) {
        if (!_hasWork())
            m_workAdded.wait(lock);
        else
            _runOne(lock);
    }
}

bool DocumentCore::runNext()
{
    std::unique_lock lock(m_mutex);
    if (m_running) return false;
    bool ran = false;
    while (!ran && !m_closed && _hasWork())
        ran = _runOne(lock);
    return ran;
}

std::size_t DocumentCore::runPending()
{
    std::unique_lock lock(m_mutex);
    if (m_running) return 0;
    std::size_t count = 0;
    while (!m_closed && _hasWork())
        count += _runOne(lock) ? 1 : 0;
    return count;
}

bool DocumentCore::_runOne(std::unique_lock<std::mutex>& lock)
{
    m_running = true;
    m_runner = std::this_thread::get_id();
    const bool flush = std::exchange(m_flushRequested, false);
    std::list<QueuedTask> queued;
    if (!flush) queued.splice(queued.begin(), m_queue, m_queue.begin());
    lock.unlock();
    VESK_SYNC_POINT("document.run");
    if (flush)
        _sendChanges();
    else
        _runTask(queued.front());
    queued.clear();
    VESK_SYNC_POINT("document.ran");
    lock.lock();
    m_runner = std::thread::id();
    m_running = false;
    if (m_closed || !_hasWork()) m_becameIdle.notify_all();
    return !flush;
}

/// One task while it runs: where its edits go, what they were, and which errors the stage posted.
class DocumentCore::Execution
{
public:
    Execution(DocumentCore& core, QueuedTask& queued) : m_core(core), m_queued(queued)
    {
        m_core.m_gatherer->beginTask();
        m_core.m_execution = this;
    }

    ~Execution()
    {
        m_core.m_execution = nullptr;
        _logErrors();
    }

    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    /// Returns false, after one record, when the task cannot edit where it is meant to.
    bool begin()
    {
        if (m_queued.type != TaskType::Edit) return true;
        try {
            const UsdEditTarget target = m_core._resolve(*m_queued.editTarget);
            m_core.m_recorder.watch(m_core.m_stage, target.GetLayer());
            m_core.m_recorder.begin();
            m_target.emplace(m_core.m_stage, target);
            return true;
        } catch (const DocumentException& error) {
            VESK_LOG_ERROR("UsdDocument: the task '{}' was dropped: {}", m_queued.label, error.what());
            return false;
        }
    }

    void settle()
    {
        if (std::exchange(m_settled, true)) return;
        if (m_target) {
            m_target.reset();
            VESK_SYNC_POINT("document.record");
            _record(m_core.m_recorder.end());
        }
        _logErrors();
        m_core._sendChanges();
    }

private:
    void _record(EditList edits)
    {
        if (m_core.m_closed) return;
        const std::string& label = m_queued.group != 0 ? m_queued.groupLabel : m_queued.label;
        m_core.m_history.record(UndoEntry{label, m_queued.group, std::move(edits)});
    }

    void _logErrors()
    {
        for (const std::string& error : takeStageErrors(m_errors))
            VESK_LOG_ERROR("UsdDocument: the task '{}' left an error of the stage: {}", m_queued.label,
                           error);
    }

    DocumentCore& m_core;
    QueuedTask& m_queued;
    TfErrorMark m_errors;
    std::optional<UsdEditContext> m_target;
    bool m_settled = false;
};

void DocumentCore::_runTask(QueuedTask& queued)
{
    Execution execution(*this, queued);
    if (execution.begin()) _callTask(queued);
    execution.settle();
}

void DocumentCore::settleTask()
{
    if (_isTaskThread() && m_execution) m_execution->settle();
}

void DocumentCore::_callTask(QueuedTask& queued) noexcept
{
    try {
        queued.task->run();
    } catch (const std::exception& error) {
        VESK_LOG_ERROR("UsdDocument: the task '{}' threw: {}", queued.label, error.what());
    } catch (...) {
        VESK_LOG_ERROR("UsdDocument: the task '{}' threw: {}", queued.label,
                       "something that is no std::exception");
    }
}

void DocumentCore::_sendChanges()
{
    std::optional<StageChangesEvent> event = m_gatherer->endTask();
    VESK_SYNC_POINT("document.announce");
    if (!event || m_closed) return;
    if (m_bus->listenerCount() == 0) {
        m_gatherer->forgetCameras();
        return;
    }
    m_gatherer->addCameras(*event);
    m_bus->sendEvent(std::move(*event));
}

void DocumentCore::_requestFlush()
{
    {
        std::lock_guard lock(m_mutex);
        if (m_closed) return;
        m_flushRequested = true;
    }
    m_workAdded.notify_one();
}

UsdEditTarget DocumentCore::_resolve(const EditTarget& target) const
{
    if (const auto* given = std::get_if<UsdEditTarget>(&target)) {
        if (given->IsNull()) return m_stage->GetEditTarget();
        if (!given->IsValid() || !m_stage->HasLocalLayer(given->GetLayer()))
            throw DocumentException(
                DocumentError::InvalidEditTarget,
                "its edit target is no layer of the stage; choose one of the layer stack.");
        return *given;
    }
    const std::string& identifier = std::get<std::string>(target);
    for (const SdfLayerHandle& layer : m_stage->GetLayerStack())
        if (layer->GetIdentifier() == identifier) return m_stage->GetEditTargetForLocalLayer(layer);
    throw DocumentException(DocumentError::InvalidEditTarget, "the stage has no layer '" +
                                                                  onOneLine(identifier) +
                                                                  "'; choose one of the layer stack.");
}

bool DocumentCore::undo()
{
    std::optional<UndoEntry> entry = m_history.takeUndo();
    if (!entry) return false;
    UndoEntry opposite;
    _revert(*entry, opposite);
    m_history.putRedo(std::move(opposite));
    return true;
}

bool DocumentCore::redo()
{
    std::optional<UndoEntry> entry = m_history.takeRedo();
    if (!entry) return false;
    UndoEntry opposite;
    _revert(*entry, opposite);
    m_history.putUndo(std::move(opposite));
    return true;
}

void DocumentCore::_revert(const UndoEntry& entry, UndoEntry& opposite)
{
    for (const SdfLayerHandle& layer : entry.edits.layers())
        m_recorder.watch(m_stage, layer);
    m_recorder.begin();
    entry.edits.revert();
    opposite.edits = m_recorder.end();
    opposite.label = entry.label;
}

void DocumentCore::beginUndoGroup(const std::string& label)
{
    static std::atomic<std::uint64_t> counter{0};
    std::lock_guard lock(m_mutex);
    if (m_group.depth++ > 0) return;
    m_group.id = ++counter;
    m_group.label = label;
}

void DocumentCore::endUndoGroup()
{
    {
        std::lock_guard lock(m_mutex);
        if (m_group.depth > 0) {
            --m_group.depth;
            return;
        }
    }
    VESK_LOG_WARN("UsdDocument endUndoGroup: no group is open");
}

void DocumentCore::waitUntilIdle() const
{
    if (_isTaskThread())
        throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
    std::unique_lock lock(m_mutex);
    VESK_SYNC_WAIT("document.idle", lock, !m_running && (m_closed || !_hasWork()));
    m_becameIdle.wait(lock, [this] { return !m_running && (m_closed || !_hasWork()); });
}

void DocumentCore::setTaskObserver(UsdDocument::TaskObserver observer)
{
    m_observed = static_cast<bool>(observer);
    auto shared = observer ? std::make_shared<const UsdDocument::TaskObserver>(std::move(observer)) : nullptr;
    std::lock_guard lock(m_mutex);
    m_observer.swap(shared);
}

void DocumentCore::notifyObserver(const UsdDocument::TaskRecord& record) const
{
    if (!m_observed) return;
    std::shared_ptr<const UsdDocument::TaskObserver> observer;
    {
        std::lock_guard lock(m_mutex);
        if (m_closed) return;
        observer = m_observer;
    }
    if (observer) (*observer)(record);
}

UsdDocument::ExecContext DocumentCore::makeContext() const
{
    UsdDocument::ExecContext context(m_stage, m_bboxCacheGuard);
    return m_contextFilter ? m_contextFilter(context) : context;
}

std::string DocumentCore::uri() const
{
    std::lock_guard lock(m_mutex);
    return m_uri;
}

void DocumentCore::setUri(const std::string& uri)
{
    std::lock_guard lock(m_mutex);
    m_uri = uri;
}

} // namespace vesk::framework::usd_document
