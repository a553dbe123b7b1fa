#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <pxr/pxr.h>
#include <pxr/usd/usd/editTarget.h>
#include <pxr/usd/usd/stage.h>

#include <vesk/base/event_bus.h>
#include <vesk/base/future.h>
#include <vesk/base/logging.h>
#include <vesk/framework/usd_document/document_error.h>
#include <vesk/framework/usd_document/exec_context.h>
#include <vesk/framework/usd_document/export.h>
#include <vesk/framework/usd_document/open_options.h>

namespace vesk::framework::usd_viewport {
class ViewportModel;
}

namespace vesk::framework::usd_document {

class DocumentCore;

/// What the document does with a task's edits.
enum class TaskType : int
{
    Read = 0, ///< Records nothing.
    Edit = 1, ///< Records what the task authors under the task's label, so that it can be undone.
};

struct DocumentOptions;

/// Owns a stage and everything that happens to it: reads and edits are queued as tasks and run one after
/// another on one thread, edits can be undone, and after each task that changed the stage one
/// StageChangesEvent goes out on the document's bus. A task's future ends after that: whoever waited for it
/// finds the edit recorded, and every listener told.
///
/// The document has a task thread of its own, or is in manual mode: then tasks wait until the host calls
/// runPendingTasks(), on a thread of its choice. A task is always queued, also when it is posted by a task.
/// Destroying the document is closing it; destroyed by a task of its own, the task still runs to its end.
///
///     auto document = UsdDocument::open("scene.usda");
///     document->edit("hide", [](const UsdDocument::ExecContext& context) {
///         UsdGeomImageable(context.stage()->GetPrimAtPath(SdfPath("/Box"))).MakeInvisible();
///     });
///     document->undo();
///
/// Thread: any, for every operation, unless it says otherwise.
class VESK_FRAMEWORK_USD_DOCUMENT_EXPORT UsdDocument : public std::enable_shared_from_this<UsdDocument>
{
public:
    /// What a task receives.
    using ExecContext = DocumentExecContext;

    /// A unit of work. Destroyed unrun when the document drops it.
    class VESK_FRAMEWORK_USD_DOCUMENT_EXPORT Task
    {
    public:
        virtual ~Task();

        /// Does the work. Must not throw; the base does nothing. Thread: task.
        virtual void run();
    };

    template <class F>
    class FTask;

    /// What is told about a task when it is queued.
    struct TaskRecord
    {
        TaskType type;                    ///< read or edit
        const std::string& label;         ///< as it was given
        const PXR_NS::UsdStagePtr& stage; ///< the stage that the task works on
        const std::variant<PXR_NS::UsdEditTarget, std::string>& editTarget; ///< as it was given
    };
    /// Called with each task that is queued.
    using TaskObserver = std::function<void(const TaskRecord&)>;

    // Making a document.

    /// A document on a new stage in memory.
    static std::shared_ptr<UsdDocument> create(const DocumentOptions& options);
    /// A document with a task thread on a new stage in memory.
    static std::shared_ptr<UsdDocument> create();

    /// A document on a stage that the host opened; from now on only tasks may touch it.
    static std::shared_ptr<UsdDocument> attach(PXR_NS::UsdStageRefPtr stage, const DocumentOptions& options);
    /// The same with a task thread.
    static std::shared_ptr<UsdDocument> attach(PXR_NS::UsdStageRefPtr stage);

    /// Opens a file on the calling thread. Throws: DocumentException, and leaves nothing behind.
    static std::shared_ptr<UsdDocument> open(const std::string& path, const OpenOptions& how,
                                             const DocumentOptions& options);
    /// The same with a task thread.
    static std::shared_ptr<UsdDocument> open(const std::string& path, const OpenOptions& how = {});

    /// The same on the default pool; failures travel in the future.
    static base::Future<std::shared_ptr<UsdDocument>>
    openAsync(const std::string& path, const OpenOptions& how, const DocumentOptions& options);
    /// The same with a task thread.
    static base::Future<std::shared_ptr<UsdDocument>> openAsync(const std::string& path,
                                                                const OpenOptions& how = {});

    ~UsdDocument();
    UsdDocument(const UsdDocument&) = delete;
    UsdDocument& operator=(const UsdDocument&) = delete;

    // Identity.

    /// Unique in the process, the same for the document's whole life.
    const std::string& getId() const;

    /// Where the root layer lives: a file path, or the identifier of an anonymous layer.
    std::string getURI() const;

    /// Carries stage changes and what renderers and viewports of this document have to say.
    const std::shared_ptr<base::EventBus>& getEventBus() const;

    // Work on the stage.

    /// Queues a read: work(const ExecContext&). The future carries the default pool.
    template <class F>
    auto read(const std::string& label, F work)
    {
        return _exec(std::move(work), TaskType::Read, label, PXR_NS::UsdEditTarget());
    }

    /// Queues an edit that is recorded under the label. An edit target that is not given is the stage's own.
    template <class F>
    auto edit(const std::string& label, F work,
              const std::variant<PXR_NS::UsdEditTarget, std::string>& editTarget = PXR_NS::UsdEditTarget())
    {
        return _exec(std::move(work), TaskType::Edit, label, editTarget);
    }

    /// Queues writing all changed layers that have a file. Future errors: FileNotWritable.
    base::Future<void> save();

    /// Queues writing the root layer to a file, and makes that file the document's URI. The stage stays on
    /// the layer that it was opened on. Future errors: FileNotWritable; no partial file is left.
    base::Future<std::string> saveAs(const std::string& path);

    /// Queues reading all layers from their files again; forgets what could be undone.
    base::Future<void> reload();

    /// Drops queued tasks, each ending as "broken promise", waits for the running one, and takes no more:
    /// what is posted from now on is dropped too. No event is sent afterwards. Called by a task of the
    /// document it does not wait. The stage itself is released with the document.
    void close();
    /// True once close() was called.
    bool isClosed() const;

    // Undo.

    /// Queues taking back the newest recorded edit; true when there was one. Undo and redo follow the tasks
    /// that were queued before them.
    base::Future<bool> undo();
    /// Queues bringing back what the newest undo took back; true when there was something.
    base::Future<bool> redo();

    /// The labels of what can be undone, next one first.
    std::vector<std::string> undoLabels() const;
    /// The labels of what can be redone, next one first.
    std::vector<std::string> redoLabels() const;

    /// Edits queued between the two calls become one entry with this label. Calls nest; the outermost label
    /// counts.
    void beginUndoGroup(const std::string& label);
    /// Logs: warn "UsdDocument endUndoGroup: no group is open", and does nothing, without a group.
    void endUndoGroup();

    /// Forgets what could be undone and redone.
    void clearUndo();

    // The queue.

    /// True when the document has no thread of its own.
    bool isManual() const;

    /// Manual mode: runs queued tasks, also those that they queue, until none is left; returns how many ran.
    /// Returns 0 at once when called by a task. Thread: one at a time.
    std::size_t runPendingTasks();

    /// Manual mode: runs the first queued task, if any; true when one ran.
    bool runNextTask();

    /// Drops the queued tasks, each ending as "broken promise"; returns how many there were.
    std::size_t dropPendingTasks();

    /// Tasks that are queued and have not begun.
    std::size_t pendingTaskCount() const;

    /// Blocks until nothing is queued and nothing runs. Throws: std::system_error
    /// resource_deadlock_would_occur when called by a task.
    void waitUntilIdle() const;

    /// Called on the posting thread for each task that is queued; null for none. For tests and recorders.
    void setTaskObserver(TaskObserver observer);

private:
    friend class usd_viewport::ViewportModel;

    UsdDocument(PXR_NS::UsdStageRefPtr stage, const DocumentOptions& options);

    /// Queues a task whose edits go to the edit target: a UsdEditTarget (a null one is the stage's own) or
    /// the identifier of a layer of the stage. A closed document drops the task. An edit target that is not
    /// on the stage drops it when its turn comes, with one error record.
    void _addTask(std::unique_ptr<Task>&& task, TaskType type, const std::string& label,
                  const PXR_NS::TfWeakPtr<PXR_NS::UsdStage>& stage,
                  const std::variant<PXR_NS::UsdEditTarget, std::string>& editTarget);

    /// Packages work of signature R(const ExecContext&), queues it and returns its future. When the URI is to
    /// be updated, work returns the new one as std::string. Throws: Exception GenericError 2 when it does
    /// not; then nothing is queued.
    template <class F>
    base::Future<std::decay_t<std::invoke_result_t<F&, const ExecContext&>>>
    _exec(F work, TaskType type, const std::string& label,
          const std::variant<PXR_NS::UsdEditTarget, std::string>& editTarget, bool updateDocumentURI = false);

    /// Records and announces what the running task has changed, once its work is done.
    static void _settleTask(DocumentCore& core);

    /// What a task receives; made when the task runs.
    ExecContext _getExecContext();

    /// The stage; null once the document is closed.
    const PXR_NS::TfRefPtr<PXR_NS::UsdStage>& _getStage() const;

    void _setDocumentURI(const std::string& uri);

    std::shared_ptr<DocumentCore> m_core;
};

/// How a document runs.
struct DocumentOptions
{
    /// No task thread: the host calls runPendingTasks().
    bool manual = false;

    /// Passed each context before its task gets it; for tests and hosts that instrument tasks. What it throws
    /// ends the task's future as "broken promise".
    std::function<UsdDocument::ExecContext(const UsdDocument::ExecContext&)> contextFilter;
};

/// A task made of a packaged call. It holds its document by plain address: the document outlives its queued
/// tasks. Destroyed unrun, its future ends as "broken promise".
template <class F>
class UsdDocument::FTask final : public UsdDocument::Task
{
public:
    /// The type of the work's value.
    using Result = std::decay_t<std::invoke_result_t<F&, const ExecContext&>>;
    /// The work with its future.
    using Packaged = base::PackagedTask<Result(const ExecContext&)>;

    /// A task of a document, which outlives it.
    FTask(UsdDocument* document, Packaged task) : m_document(document), m_task(std::move(task)) {}

    void run() override
    {
        // The work may destroy the document: what is needed later is held here and by the context.
        const std::shared_ptr<DocumentCore> core = m_document->m_core;
        const ExecContext context = m_document->_getExecContext();
        m_task.runWithEpilogue([&core] { _settleTask(*core); }, context);
    }

private:
    UsdDocument* m_document;
    Packaged m_task;
};

template <class F>
base::Future<std::decay_t<std::invoke_result_t<F&, const UsdDocument::ExecContext&>>>
UsdDocument::_exec(F work, TaskType type, const std::string& label,
                   const std::variant<PXR_NS::UsdEditTarget, std::string>& editTarget, bool updateDocumentURI)
{
    using Packer = FTask<F>;
    typename Packer::Packaged packaged;
    if constexpr (std::is_same_v<typename Packer::Result, std::string>) {
        if (updateDocumentURI) {
            packaged =
                typename Packer::Packaged([this, work = std::move(work)](const ExecContext& context) mutable {
                    std::string uri = work(context);
                    _setDocumentURI(uri);
                    return uri;
                });
        }
    } else if (updateDocumentURI) {
        VESK_LOG_ERROR(
            "({}) When updateDocumentURI is true, the function needs to return the std::string of the "
            "new URI",
            label);
        throw base::error_handling::Exception(
            base::error_handling::makeErrorCode(base::error_handling::GenericError::InvalidArgument),
            "updateDocumentURI requires string return value");
    }
    if (!packaged.valid()) packaged = typename Packer::Packaged(std::move(work));
    auto future = packaged.getFuture();
    _addTask(std::make_unique<Packer>(this, std::move(packaged)), type, label,
             PXR_NS::TfWeakPtr<PXR_NS::UsdStage>(_getStage()), editTarget);
    return future;
}

} // namespace vesk::framework::usd_document
