#include "session.h"

#include "observed_renderer.h"

#include <apps/support/errors.h>
#include <apps/support/interruption.h>

#include <vesk/base/thread_pool.h>

#include <ostream>
#include <utility>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::cli::replay {

using apps::Json;
using framework::usd_document::DocumentException;
using framework::usd_document::DocumentOptions;
using framework::usd_document::UsdDocument;
using framework::usd_viewport::ViewportModel;

Session::Session(const std::string& scene) : m_observer(std::make_shared<Observer>()), m_log(m_observer)
{
    _open(scene);
}

void Session::_open(const std::string& scene)
{
    DocumentOptions options;
    options.manual = true;
    try {
        m_documents.push_back(UsdDocument::open(scene, {}, options));
    } catch (const DocumentException& error) {
        throw apps::JobError(apps::oneLine(error.what()));
    }
    UsdStagePtr stage;
    m_documents.back()->read(
        "stage", [&stage](const UsdDocument::ExecContext& context) { stage = UsdStagePtr(context.stage()); });
    m_documents.back()->runPendingTasks();
    m_stages.push_back(stage);
    m_queues.push_back(m_observer->watch(*m_documents.back()));
}

std::unique_ptr<ViewportModel> Session::_makeModel(const Construction& how)
{
    registerObservedRenderer(m_observer, how.renderer);
    const int renderSize[2] = {how.renderSize[0], how.renderSize[1]};
    const int viewportSize[2] = {how.viewportSize[0], how.viewportSize[1]};
    return std::make_unique<ViewportModel>(
        m_documents.back(), nullptr, kObservedRendererId, std::vector<usd::utils::Param<VtValue>>{},
        renderSize, viewportSize, how.devicePixelRatio, true, true, false, nullptr, nullptr);
}

void Session::construct(const Construction& how)
{
    try {
        m_model = _makeModel(how);
    } catch (...) {
        if (!m_model) constructUnseen(Construction());
        throw;
    }
}

void Session::constructUnseen(const Construction& how)
{
    const Observer::Pause pause(*m_observer);
    m_model = _makeModel(how);
}

void Session::setDocument(const std::string& scene)
{
    _open(scene);
    m_model->setDocument(m_documents.back());
}

std::size_t Session::_runTasksOf(std::size_t document)
{
    std::size_t ran = 0;
    while (m_documents[document]->runNextTask()) {
        m_ran.push_back(m_queues[document]->takeFirst());
        ++ran;
        // Its continuations go before the next task: a session prints the same each time.
        base::ThreadPool::defaultPool().waitUntilIdle();
        apps::Interruption::check();
    }
    return ran;
}

std::size_t Session::runTasks()
{
    std::size_t total = 0;
    std::size_t ran = 0;
    do {
        ran = 0;
        for (std::size_t i = 0; i < m_documents.size(); ++i)
            ran += _runTasksOf(i);
        total += ran;
    } while (ran > 0);
    return total;
}

Json Session::_takeCompleted()
{
    Json completed = Json::array();
    std::vector<Pending> still;
    for (Pending& pending : m_pending) {
        if (!pending.isReady()) {
            still.push_back(std::move(pending));
            continue;
        }
        Json line = {{"step", pending.step}};
        line.update(pending.end());
        completed.push_back(std::move(line));
    }
    m_pending = std::move(still);
    return completed;
}

void Session::step(const std::string& operation, const Action& action, std::ostream& out)
{
    Json line = {{"step", m_step}, {"op", operation}, {"result", nullptr}};
    try {
        line["result"] = action(*this);
    } catch (...) {
        apps::Interruption::check();
        line["error"] = errorJson(std::current_exception());
    }
    base::ThreadPool::defaultPool().waitUntilIdle();

    const Json completed = _takeCompleted();
    if (!completed.empty()) line["completed"] = completed;
    if (!m_ran.empty()) line["ran"] = std::exchange(m_ran, Json::array());
    line["camera"] = apps::jsonCamera(m_model->getViewportCamera());
    line["distanceToCenter"] = apps::jsonNumber(m_model->distanceToCenter());
    line["activeCameraPath"] = m_model->activeCameraPath();
    line["zUp"] = m_model->zUp();
    line.update(m_observer->take());
    out << apps::jsonLine(line) << "\n";
    ++m_step;
}

} // namespace vesk::cli::replay
