#include <vesk/framework/usd_document/usd_document.h>

#include <utility>

#include <pxr/usd/sdf/layer.h>

#include "document_core.h"
#include "stage_loader.h"
#include "stage_writer.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::framework::usd_document {

UsdDocument::Task::~Task() = default;
void UsdDocument::Task::run() {}

UsdDocument::UsdDocument(UsdStageRefPtr stage, const DocumentOptions& options)
    : m_core(std::make_shared<DocumentCore>(std::move(stage), options))
{
    m_core->start();
}

UsdDocument::~UsdDocument()
{
    m_core->shutDown();
    // Whoever listens hears nothing any more when this returns, even if a task of this thread goes on.
    m_core->bus()->unsubscribeAll();
}

std::shared_ptr<UsdDocument> UsdDocument::create(const DocumentOptions& options)
{
    return attach(UsdStage::CreateInMemory(), options);
}

std::shared_ptr<UsdDocument> UsdDocument::create() { return create(DocumentOptions()); }

std::shared_ptr<UsdDocument> UsdDocument::attach(UsdStageRefPtr stage, const DocumentOptions& options)
{
    if (!stage)
        throw base::error_handling::Exception(
            base::error_handling::makeErrorCode(base::error_handling::GenericError::InvalidArgument),
            "a document needs a stage");
    return std::shared_ptr<UsdDocument>(new UsdDocument(std::move(stage), options));
}

std::shared_ptr<UsdDocument> UsdDocument::attach(UsdStageRefPtr stage)
{
    return attach(std::move(stage), DocumentOptions());
}

std::shared_ptr<UsdDocument> UsdDocument::open(const std::string& path, const OpenOptions& how,
                                               const DocumentOptions& options)
{
    return attach(loadStage(path, how), options);
}

std::shared_ptr<UsdDocument> UsdDocument::open(const std::string& path, const OpenOptions& how)
{
    return open(path, how, DocumentOptions());
}

base::Future<std::shared_ptr<UsdDocument>>
UsdDocument::openAsync(const std::string& path, const OpenOptions& how, const DocumentOptions& options)
{
    return base::runOn(base::defaultExecutor(), [path, how, options] { return open(path, how, options); });
}

base::Future<std::shared_ptr<UsdDocument>> UsdDocument::openAsync(const std::string& path,
                                                                  const OpenOptions& how)
{
    return openAsync(path, how, DocumentOptions());
}

const std::string& UsdDocument::getId() const { return m_core->id(); }

std::string UsdDocument::getURI() const { return m_core->uri(); }

const std::shared_ptr<base::EventBus>& UsdDocument::getEventBus() const { return m_core->bus(); }

base::Future<void> UsdDocument::save()
{
    return read("save", [](const ExecContext& context) { saveStage(context.stage()); });
}

base::Future<std::string> UsdDocument::saveAs(const std::string& path)
{
    const auto work = [path](const ExecContext& context) {
        writeRootLayer(context.stage(), path);
        return path;
    };
    return _exec(work, TaskType::Read, "saveAs", UsdEditTarget(), true);
}

base::Future<void> UsdDocument::reload()
{
    return read("reload", [core = m_core](const ExecContext& context) {
        context.stage()->Reload();
        core->history().clear();
    });
}

void UsdDocument::close() { m_core->close(); }

bool UsdDocument::isClosed() const { return m_core->isClosed(); }

base::Future<bool> UsdDocument::undo()
{
    return read("undo", [core = m_core](const ExecContext&) { return core->undo(); });
}

base::Future<bool> UsdDocument::redo()
{
    return read("redo", [core = m_core](const ExecContext&) { return core->redo(); });
}

std::vector<std::string> UsdDocument::undoLabels() const { return m_core->history().undoLabels(); }

std::vector<std::string> UsdDocument::redoLabels() const { return m_core->history().redoLabels(); }

void UsdDocument::beginUndoGroup(const std::string& label) { m_core->beginUndoGroup(label); }

void UsdDocument::endUndoGroup() { m_core->endUndoGroup(); }

void UsdDocument::clearUndo() { m_core->history().clear(); }

bool UsdDocument::isManual() const { return m_core->isManual(); }

std::size_t UsdDocument::runPendingTasks()
{
    // A task may destroy this document.
    const std::shared_ptr<DocumentCore> core = m_core;
    return core->isManual() ? core->runPending() : 0;
}

bool UsdDocument::runNextTask()
{
    const std::shared_ptr<DocumentCore> core = m_core;
    return core->isManual() && core->runNext();
}

std::size_t UsdDocument::dropPendingTasks()
{
    const std::shared_ptr<DocumentCore> core = m_core;
    return core->dropPending();
}

std::size_t UsdDocument::pendingTaskCount() const { return m_core->pendingCount(); }

void UsdDocument::waitUntilIdle() const { m_core->waitUntilIdle(); }

void UsdDocument::setTaskObserver(TaskObserver observer) { m_core->setTaskObserver(std::move(observer)); }

void UsdDocument::_addTask(std::unique_ptr<Task>&& task, TaskType type, const std::string& label,
                           const TfWeakPtr<UsdStage>& stage,
                           const std::variant<UsdEditTarget, std::string>& editTarget)
{
    DocumentCore::QueuedTask queued;
    queued.task = std::move(task);
    queued.type = type;
    queued.label = label;
    // Copying a target costs more than queueing does.
    if (type == TaskType::Edit) queued.editTarget = editTarget;
    if (m_core->isObserved()) m_core->notifyObserver(TaskRecord{type, label, stage, editTarget});
    m_core->post(std::move(queued));
}

void UsdDocument::_settleTask(DocumentCore& core) { core.settleTask(); }

UsdDocument::ExecContext UsdDocument::_getExecContext() { return m_core->makeContext(); }

const TfRefPtr<UsdStage>& UsdDocument::_getStage() const
{
    static const TfRefPtr<UsdStage>& none = *new TfRefPtr<UsdStage>();
    return m_core->isClosed() ? none : m_core->stage();
}

void UsdDocument::_setDocumentURI(const std::string& uri) { m_core->setUri(uri); }

} // namespace vesk::framework::usd_document
